// Whatever solves.json holds, every solve has an id, and writing the list keeps all of them.

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "fuzz/data_file.h"
#include "storage/storage.h"

namespace {

using Solves = std::vector<store::SolveEntry>;

// Returns a level that no solve has.
int freeLevel(const Solves& solves) {
  int level = 1;
  while (std::any_of(solves.begin(), solves.end(), [&](const auto& solve) { return solve.level == level; }))
    ++level;
  return level;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::putFile("solves.json", data, size);
  const Solves solves = store::listSolves();
  for (const store::SolveEntry& solve : solves) {
    assert(!solve.id.empty());
    // Pictures stay in their directory.
    const std::string shot = store::shotPath(solve);
    assert(shot.empty() || shot.rfind('/') == store::solvesDir().size());
  }

  store::deleteSolve("");
  assert(store::listSolves() == solves);

  store::SolveEntry fresh;
  fresh.id = "fresh";
  fresh.level = freeLevel(solves);
  Solves expected = solves;
  expected.insert(expected.begin(), fresh);
  expected.resize(std::min<std::size_t>(expected.size(), 200));
  store::recordSolve(fresh);
  assert(store::listSolves() == expected);
  return 0;
}
