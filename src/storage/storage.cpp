#include "storage/storage.h"

namespace store {

int computeStars(int aids) {
  if (aids <= 0) return 3;
  return aids <= 2 ? 2 : 1;
}

}  // namespace store
