// Reads the server's current directory once and hands out its entries; and the deletion of a whole directory.
//
// The list belongs to the directory that the session was in: whoever wants another one changes to it first.
// It is a snapshot that nothing refreshes. On the process's thread; a stop during the reading keeps what has
// come.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ftp/protocol.h"
#include "support/containers.h"

/// Callers skip `.` and `..`, which come through like other entries, and ask the stopped flag and `IsToStop`
/// between two items. Owns its items.
class LFileTransferProtocol::DirIterator {
 public:
  /// One entry. All zero when new.
  struct Item {
    Item* next = nullptr;
    char name[kTextSize] = {};  ///< As the server gave it, case kept.
    int64_t modified = 0;       ///< Seconds on the wall-clock scale of LDateTime.
    bool modifiedKnown = false;
    uint64_t size = 0;  ///< Bytes.
    bool sizeKnown = false;
    bool isDirectory = false;
    bool isSymbolicLink = false;
    bool typeKnown = false;           ///< Both of the above are settled.
    char attributes[kTextSize] = {};  ///< The permission text of LIST or the mode fact of MLSD.
    bool attributesKnown = false;
    char owner[kTextSize] = {};  ///< Empty under MLSD.
    bool ownerKnown = false;
    char group[kTextSize] = {};  ///< Empty under MLSD.
    bool groupKnown = false;
  };

  DirIterator() = default;
  virtual ~DirIterator() = default;

  /// Replaces the list by the entries that match `pattern` (`?` and `*`, without regard to ASCII case) and
  /// stands on the first. A listing that the server refuses is an empty one with result 0; one that breaks
  /// off keeps what came.
  [[nodiscard]] LProcessResult _LoadList(LProcessInterface&, LFileTransferProtocol&, const char* pattern);

  // Walking: for (iterator.First(); iterator.Current(); iterator.Next()).
  void First() { pCurrent = items.first; }
  void Next() {
    if (pCurrent) pCurrent = pCurrent->next;
  }
  Item* Current() const { return pCurrent; }
  /// Of the current item; empty if there is none.
  const char* Name() const { return pCurrent ? pCurrent->name : ""; }
  size_t Count() const { return iCount; }
  /// The data connection could not be made: the only trace of it after _LoadList.
  bool IsPassiveFailure() const { return bPassiveFailure; }

  /// Of the current item. A type that is not known is asked for, and then counts as known although only the
  /// field asked for is filled: the other question about the same item is answered with false.
  bool IsDirectory();
  bool IsSymbolicLink();

 protected:
  /// The interface for questions about an item, and where their stop is noted.
  virtual LProcessInterface& Interface() { return processVoid; }
  virtual void NoteStop() {}

 private:
  class Reader;
  signed char AskKind();

  LFileTransferProtocol* pSession = nullptr;  ///< Of the last _LoadList; not owned.
  LList<Item> items;
  size_t iCount = 0;
  Item* pCurrent = nullptr;
  bool bPassiveFailure = false;
  LProcessInterfaceVoid processVoid;
};

/// All entries, listed at once by the constructor. The interface outlives it.
class LFileTransferProtocol::DirIteratorAllFiles : public LFileTransferProtocol::DirIterator {
 public:
  DirIteratorAllFiles(LProcessInterface& process, LFileTransferProtocol& session);

  /// The listing, or a question about an item, was stopped.
  bool IsStopped() const { return bStopped; }
  /// The listing gave result 0.
  bool IsLoaded() const { return bLoaded; }

 protected:
  LProcessInterface& Interface() override { return *pProcess; }
  void NoteStop() override { bStopped = true; }

 private:
  LProcessInterface* pProcess;
  bool bStopped = false;
  bool bLoaded = false;
};

/// Deletes `directory`, a path relative to the current directory, with all that is in it. A directory that
/// cannot be entered counts as deleted. One entry that cannot be deleted ends it all, with the session left
/// in that folder.
[[nodiscard]] LProcessResult ProcessFtpDeleteDirectoryAndFiles(LProcessInterface&, LFileTransferProtocol&,
                                                               const char* directory);

// The pure rules: what a line of a listing says. `item` is new; false if the line is no entry or its name
// does not match `pattern`.

/// A line of MLSD: facts, a blank, the name.
[[nodiscard]] bool FtpItemFromFactsLine(const char* line, const char* pattern,
                                        LFileTransferProtocol::DirIterator::Item& item);
/// A line of LIST, in whatever form.
[[nodiscard]] bool FtpItemFromListingLine(const char* line, const char* pattern,
                                          LFileTransferProtocol::DirIterator::Item& item);
/// The pattern of a listing against a name.
[[nodiscard]] bool FtpNameMatches(const char* pattern, const char* name);
