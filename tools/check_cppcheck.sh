#!/usr/bin/env bash
# Fails if cppcheck complains about the product's code. It skips the tests, whose macros it cannot parse. Suppressed are
# advice to use named algorithms instead of short loops and advice to make parameters and references const, which all
# drawing functions take alike. Newer versions also report that they check fewer branches, and mistake the value that
# std::exchange returns for the one that it stores. Run it from anywhere.
set -euo pipefail
cd "$(dirname "$0")/.."
names=(useStlAlgorithm normalCheckLevelMaxBranches knownConditionTrueFalse:src/app/frame_loop.cpp)
names+=(constParameter constParameterReference constParameterPointer constParameterCallback constVariableReference)
cppcheck --quiet --std=c++20 --language=c++ --enable=warning,style,performance,portability --inline-suppr \
  "${names[@]/#/--suppress=}" --error-exitcode=1 -Isrc -Ibench src tools bench
