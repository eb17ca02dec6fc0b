// Scrambles one asset for the executable, as src/resources/assets.cpp reads it.
// Run by the build: scramble PLAIN SCRAMBLED
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "resources/scramble.h"

namespace {

bool scrambleFile(const char* from, const char* to) {
  std::ifstream in(from, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (!in) return false;
  assets_data::scramble(bytes);
  std::ofstream out(to, std::ios::binary);
  out << bytes;
  out.close();
  return !out.fail();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: scramble PLAIN SCRAMBLED\n");
    return 2;
  }
  if (!scrambleFile(argv[1], argv[2])) {
    std::fprintf(stderr, "scramble: cannot turn %s into %s\n", argv[1], argv[2]);
    std::remove(argv[2]);  // half a file would look up to date to the next build
    return 1;
  }
  return 0;
}
