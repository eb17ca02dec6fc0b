// paths.h: the directories of the executable and of the asset tree, creating directories, and reading files
// safely. Knows nothing of the files' contents. Paths are byte strings with slashes and are not normalised.
#pragma once

#include <optional>
#include <string>

namespace paths {

// The variable's value; `fallback` if it is unset or empty.
std::string envOr(const char* name, const std::string& fallback = "");

// The directory of the running executable, without a trailing slash. "." if the system does not tell; empty
// for an executable in the root directory.
std::string exeDir();

// The directory that contains assets/fonts and assets/audio. A directory with only one of them does not
// count. Searched once, in this order: the snap, the AppImage, VESKARA_ASSET_DIR, the installation
// directories, beside the executable, the working directory. exeDir() if none is found.
std::string assetDir();

// The path of a file in the asset tree; `name` is relative to assets/. The file need not exist.
std::string asset(const std::string& name);

// Creates `path` and its missing ancestors with mode 0755. A backslash separates like a slash. Failure is not
// reported: writing into the directory fails then.
void ensureDir(const std::string& path);

// Whether `path` is a plain file, after following links. Only plain files are safe to read: opening a pipe
// blocks, and a device may never end.
bool isFile(const std::string& path);

// The contents of a plain file. Nothing if there is none or it cannot be read to its end.
std::optional<std::string> readFile(const std::string& path);

// Removes a pipe from where a file is to be written: opening it would block until somebody reads. False if
// the pipe stays.
bool removePipe(const std::string& path);

}  // namespace paths
