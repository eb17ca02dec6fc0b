// whole_files.h: looks whether the player's files are what they ought to be, by the eyes of another library
// and of the game itself.
#pragma once

#include <string>

namespace test {

// A line for each thing that is wrong: a file that is no JSON, a member that the game reads as something else
// than is written, a picture without a record or a record without its picture, a file that nobody knows.
std::string problemsOfFiles();

}  // namespace test
