#include "storage/paths.h"
#include "storage/storage.h"

namespace store {

std::string dataDir() {
  // Never destroyed: it is still used at exit.
  static const std::string& dir = *new std::string(
      paths::envOr("XDG_DATA_HOME", paths::envOr("HOME", ".") + "/.local/share") + "/veskara");
  return dir;
}

std::string solvesDir() { return dataDir() + "/solves"; }

void ensureDataDirs() {
  paths::ensureDir(dataDir());
  paths::ensureDir(solvesDir());
}

}  // namespace store
