// whole_files.h: checks the player's files with another library and with the game itself.
#pragma once

#include <string>

namespace test {

// Returns a line for each problem: a file that is not JSON, a member that the game reads differently, a
// picture without its record, a record without its picture, an unknown file.
std::string problemsOfFiles();

}  // namespace test
