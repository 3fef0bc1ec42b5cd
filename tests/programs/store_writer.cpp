// A process that uses the preference store and is killed or let down by the system while it does.
//
//   store_writer save FIRST LAST   saves the generations one after the other; for each a line "saved N" or
//                                  "failed N", then "holds M" with what the process itself reads then
//   store_writer read              a line "holds M"
//
// The store lies where XDG_CONFIG_HOME says. A question for a file that is never there marks the beginning of
// the saves for whoever traces the system calls.
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

#include "support/store_generations.h"

namespace {

/// One write for each line, and nothing kept back in a buffer when the process is killed.
void Say(const char* word, int number) {
  const std::string line = word + std::string(" ") + std::to_string(number) + "\n";
  if (write(STDOUT_FILENO, line.data(), line.size()) < 0) _exit(2);
}

}  // namespace

int main(int count, char** arguments) {
  const bool isSave = count == 4 && strcmp(arguments[1], "save") == 0;
  if (!isSave && (count != 2 || strcmp(arguments[1], "read") != 0)) return 2;
  if (isSave) {
    (void)access("/saves-begin", F_OK);
    for (int generation = atoi(arguments[2]); generation <= atoi(arguments[3]); ++generation) {
      Say(SaveStoreGeneration(generation) ? "saved" : "failed", generation);
      Say("holds", StoredGeneration());
    }
    return 0;
  }
  Say("holds", StoredGeneration());
  return 0;
}
