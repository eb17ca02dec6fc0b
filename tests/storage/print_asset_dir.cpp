// Prints the asset root it finds. paths_test.cpp runs copies of it from the places where the game may be
// installed.
#include <iostream>

#include "storage/paths.h"

int main() { std::cout << paths::assetDir(); }
