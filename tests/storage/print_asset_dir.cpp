// Prints the asset root that it finds. paths_test.cpp runs copies of it from the possible installation
// directories.
#include <iostream>

#include "storage/paths.h"

int main() { std::cout << paths::assetDir(); }
