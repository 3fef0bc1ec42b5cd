// A tree of files as people have them: folders in folders, odd names, empty files and one large one. The same size
// makes the same tree, so that what travelled is compared with one that did not.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct TreeSize {
  int files;
  int folders;        ///< Each below one of those before it, the first ones below the top.
  size_t largeBytes;  ///< Of the last file.
};

/// Makes the tree in `folder`, each file with a date of its own in the past. Paths below it stay short.
void MakeTreeOfFiles(const std::string& folder, const TreeSize& size);

enum class Times { kCompared, kIgnored };
/// What tells two trees apart, a line for each path: on one side only, other bytes, another date. Empty if nothing
/// does.
std::vector<std::string> TreeDifferences(const std::string& left, const std::string& right, Times times);
