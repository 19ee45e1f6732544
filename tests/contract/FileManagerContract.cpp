#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/foundation/FileManager.h"

#ifdef VELTO_CONTRACT_HEADLESS
#include "platform/headless/MemoryFileManager.h"
#else
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/foundation/PosixFileManager.h"
#include "tests/support/TemporaryFolder.h"
#endif

namespace velto {
namespace {

using Kind = FileError::Kind;
using Type = FileInfo::Type;

#ifdef VELTO_CONTRACT_HEADLESS

/// Files in memory below an empty folder.
class Backend {
 public:
  Backend() { files_.createDirectory(root()); }
  [[nodiscard]] FileManager& files() { return files_; }
  [[nodiscard]] static std::filesystem::path root() { return "/root"; }
  void makeLink(const std::filesystem::path& path, const std::filesystem::path& target) {
    files_.makeLink(path, target);
  }

 private:
  MemoryFileManager files_;
};

#else

/// The disk below an empty folder.
class Backend {
 public:
  [[nodiscard]] FileManager& files() { return files_; }
  [[nodiscard]] std::filesystem::path root() const { return folder_.path; }
  static void makeLink(const std::filesystem::path& path, const std::filesystem::path& target) {
    std::filesystem::create_symlink(target, path);
  }

 private:
  PosixFileManager files_;
  test::TemporaryFolder folder_;
};

#endif

class FileManagerContract : public testing::Test {
 protected:
  static std::optional<Kind> failure(const std::function<void()>& operation) {
    try {
      operation();
    } catch (const FileError& error) {
      return error.kind();
    }
    return std::nullopt;
  }

  Backend backend_;
  FileManager& files_ = backend_.files();
  const std::filesystem::path root_ = backend_.root();
  const std::filesystem::path file_ = root_ / "file";
};

TEST_F(FileManagerContract, WritesAndReadsAndCopiesWholeFiles) {
  const std::string large = std::string(2'500'000, 'x') + "end";
  const auto copy = root_ / "copy";
  for (const std::string& bytes : {std::string("one"), std::string(), large, std::string("\0\n", 2)}) {
    files_.writeAtomically(file_, bytes);
    EXPECT_EQ(files_.read(file_), bytes);
    EXPECT_EQ(files_.info(file_)->size, bytes.size());
    files_.copy(file_, copy);
    EXPECT_EQ(files_.read(copy), bytes);
    EXPECT_EQ(failure([&] { files_.copy(file_, copy); }), Kind::alreadyExists);
    files_.remove(copy);
  }
  EXPECT_EQ(files_.list(root_), std::vector<std::string>{"file"}) << "nothing else is left behind";
}

TEST_F(FileManagerContract, TellsWhyNotAndLeavesNothingBehind) {
  files_.writeAtomically(file_, "one");
  const auto folder = root_ / "folder";
  const auto none = root_ / "none";
  files_.createDirectory(folder);
  const std::pair<std::function<void()>, Kind> cases[] = {
      {[&] { (void)files_.read(none); }, Kind::notFound},
      {[&] { (void)files_.read(folder); }, Kind::isDirectory},
      {[&] { (void)files_.read(file_ / "inside"); }, Kind::notDirectory},
      {[&] { (void)files_.open(none); }, Kind::notFound},
      {[&] { (void)files_.open(folder); }, Kind::isDirectory},
      {[&] { files_.writeAtomically(none / "file", "x"); }, Kind::notFound},
      {[&] { files_.writeAtomically(file_ / "inside", "x"); }, Kind::notDirectory},
      {[&] { files_.writeAtomically(folder, "x"); }, Kind::isDirectory},
      {[&] { files_.append(none / "file", "x"); }, Kind::notFound},
      {[&] { files_.append(folder, "x"); }, Kind::isDirectory},
      {[&] { files_.copy(none, root_ / "copy"); }, Kind::notFound},
      {[&] { files_.copy(folder, root_ / "copy"); }, Kind::isDirectory},
      {[&] { files_.copy(file_, none / "copy"); }, Kind::notFound},
      {[&] { files_.rename(none, root_ / "moved"); }, Kind::notFound},
      {[&] { files_.rename(file_, none / "moved"); }, Kind::notFound},
      {[&] { files_.rename(file_, folder); }, Kind::alreadyExists},
      {[&] { files_.createDirectory(file_); }, Kind::alreadyExists},
      {[&] { files_.remove(none); }, Kind::notFound},
      {[&] { (void)files_.list(none); }, Kind::notFound},
      {[&] { (void)files_.list(file_); }, Kind::notDirectory},
  };
  for (std::size_t at = 0; at < std::size(cases); ++at) {
    EXPECT_EQ(failure(cases[at].first), cases[at].second) << "case " << at;
  }
  try {
    (void)files_.read(none);
  } catch (const FileError& error) {
    EXPECT_STREQ(error.what(), "“none” could not be read: it does not exist.");
  }
  EXPECT_TRUE(failure([&] { files_.createDirectory(file_ / "inside"); }));
  EXPECT_TRUE(failure([&] { files_.rename(folder, folder / "inside"); }));
  EXPECT_EQ(files_.readIfPossible(none), std::nullopt);
  EXPECT_EQ(files_.read(file_), "one");
  EXPECT_EQ(files_.list(root_), (std::vector<std::string>{"file", "folder"}));
}

TEST_F(FileManagerContract, EveryReplacementCanBeTold) {
  files_.writeAtomically(file_, "one");
  const auto first = files_.info(file_);
  EXPECT_EQ(files_.info(file_), first);
  files_.writeAtomically(file_, "two");
  EXPECT_NE(files_.info(file_), first);
  EXPECT_GE(files_.info(file_)->modified, first->modified);
  EXPECT_EQ(first->type, Type::file);
}

TEST_F(FileManagerContract, ReadsAnOpenFileInPartsWhateverTakesItsPlace) {
  files_.writeAtomically(file_, "0123456789");
  const auto reader = files_.open(file_);
  EXPECT_EQ(reader->info(), files_.info(file_));
  files_.writeAtomically(file_, "other");
  const auto read = [&](std::uint64_t offset, std::size_t size) {
    std::string bytes(size, 'x');
    bytes.resize(reader->read(offset, bytes));
    return bytes;
  };
  EXPECT_EQ(read(0, 4), "0123");
  EXPECT_EQ(read(8, 4), "89");
  EXPECT_EQ(read(10, 4), "");
  EXPECT_EQ(read(1000, 4), "");
  EXPECT_NE(files_.info(file_), reader->info());
}

TEST_F(FileManagerContract, ReplacesABeginningOnlyOfTheFileThatIsKnown) {
  const std::string large = "abc" + std::string(3'000'000, 'x');
  files_.writeAtomically(file_, large);
  auto reader = files_.open(file_);
  const FileInfo known = reader->info();
  const auto written = files_.replaceBeginning(file_, "new ", *reader, 3, known);
  EXPECT_EQ(files_.read(file_), "new " + large.substr(3));
  EXPECT_EQ(written, files_.info(file_));
  EXPECT_EQ(files_.replaceBeginning(file_, "late", *reader, 3, known), std::nullopt)
      << "another one is there";
  reader = files_.open(file_);
  files_.append(file_, "!");
  EXPECT_EQ(files_.replaceBeginning(file_, "late", *reader, 3, *written), std::nullopt) << "it was changed";
  reader = files_.open(file_);
  EXPECT_TRUE(files_.replaceBeginning(file_, "all", *reader, 1U << 30U, reader->info()));
  EXPECT_EQ(files_.read(file_), "all");
  backend_.makeLink(root_ / "link", "file");
  reader = files_.open(root_ / "link");
  EXPECT_EQ(files_.replaceBeginning(root_ / "link", "x", *reader, 0, reader->info()), std::nullopt);
  files_.remove(file_);
  EXPECT_EQ(files_.replaceBeginning(file_, "late", *reader, 0, reader->info()), std::nullopt) << "it is gone";
  EXPECT_EQ(files_.list(root_), std::vector<std::string>{"link"}) << "nothing else is left behind";
}

TEST_F(FileManagerContract, AppendsToTheEnd) {
  files_.append(file_, "one");
  const auto before = files_.info(file_);
  files_.append(file_, "two");
  EXPECT_EQ(files_.read(file_), "onetwo");
  EXPECT_EQ(files_.info(file_)->inode, before->inode);
}

TEST_F(FileManagerContract, MakesFoldersWithThoseAbove) {
  files_.createDirectory(root_ / "a" / "b" / "c");
  files_.writeAtomically(root_ / "a" / "b" / "c" / "file", "x");
  files_.createDirectory(root_ / "a" / "b" / "c" / "");
  EXPECT_EQ(files_.read(root_ / "a" / "b" / "c" / "file"), "x");
  EXPECT_EQ(files_.info(root_ / "a")->type, Type::directory);
}

TEST_F(FileManagerContract, RemovesFilesAndTrees) {
  files_.createDirectory(root_ / "a" / "b");
  files_.createDirectory(root_ / "ab");
  files_.writeAtomically(root_ / "a" / "b" / "file", "x");
  files_.remove(root_ / "a");
  EXPECT_EQ(files_.list(root_), std::vector<std::string>{"ab"});
  EXPECT_FALSE(files_.exists(root_ / "a" / "b" / "file"));
}

TEST_F(FileManagerContract, ListsInByteOrder) {
  for (const char* name : {"b", ".hidden", "a10", "a9", "é", "B", "a.b"})
    files_.writeAtomically(root_ / name, "");
  files_.createDirectory(root_ / "a");
  files_.writeAtomically(root_ / "a" / "inside", "");
  EXPECT_EQ(files_.list(root_),
            (std::vector<std::string>{".hidden", "B", "a", "a.b", "a10", "a9", "b", "é"}));
}

TEST_F(FileManagerContract, RenamesFilesAndFolders) {
  files_.writeAtomically(file_, "new");
  files_.writeAtomically(root_ / "old", "old");
  const auto before = files_.info(file_);
  files_.rename(file_, root_ / "old");
  EXPECT_EQ(files_.read(root_ / "old"), "new");
  EXPECT_EQ(files_.info(root_ / "old")->inode, before->inode);
  EXPECT_FALSE(files_.exists(file_));

  files_.createDirectory(root_ / "a" / "b");
  files_.writeAtomically(root_ / "a" / "b" / "x", "x");
  files_.rename(root_ / "a", root_ / "c");
  EXPECT_EQ(files_.read(root_ / "c" / "b" / "x"), "x");
  EXPECT_EQ(files_.list(root_), (std::vector<std::string>{"c", "old"}));
}

TEST_F(FileManagerContract, TreatsLinksAsTheSystemDoes) {
  files_.writeAtomically(file_, "target");
  const auto link = root_ / "link";
  backend_.makeLink(link, "file");
  EXPECT_EQ(files_.info(link)->type, Type::symbolicLink);
  EXPECT_EQ(files_.read(link), "target");
  files_.append(link, "+");
  EXPECT_EQ(files_.read(file_), "target+");
  files_.writeAtomically(link, "own");
  EXPECT_EQ(files_.info(link)->type, Type::file);
  EXPECT_EQ(files_.read(file_), "target+");

  backend_.makeLink(root_ / "dangling", "none");
  EXPECT_TRUE(files_.exists(root_ / "dangling"));
  EXPECT_EQ(failure([&] { (void)files_.read(root_ / "dangling"); }), Kind::notFound);
  backend_.makeLink(root_ / "circle", "circle");
  EXPECT_EQ(failure([&] { (void)files_.read(root_ / "circle"); }), Kind::other);
  backend_.makeLink(root_ / "other", "file");
  files_.remove(root_ / "other");
  EXPECT_TRUE(files_.exists(file_)) << "the link goes, not its target";
}

#ifndef VELTO_CONTRACT_HEADLESS

TEST_F(FileManagerContract, KeepsEverythingPrivate) {
  const auto mode = [](const std::filesystem::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 0777U;
  };
  files_.createDirectory(root_ / "a" / "b");
  EXPECT_EQ(mode(root_ / "a"), 0700U);
  EXPECT_EQ(mode(root_ / "a" / "b"), 0700U);
  files_.append(root_ / "log", "x");
  EXPECT_EQ(mode(root_ / "log"), 0600U);
  files_.writeAtomically(file_, "x");
  EXPECT_EQ(mode(file_), 0600U);
  ::chmod(file_.c_str(), 0644);
  files_.writeAtomically(file_, "y");
  EXPECT_EQ(mode(file_), 0600U);
}

TEST_F(FileManagerContract, DoesNotWaitForAPipe) {
  ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
  EXPECT_EQ(failure([&] { (void)files_.read(file_); }), Kind::other);
  EXPECT_EQ(failure([&] { files_.append(file_, "x"); }), Kind::other);
  EXPECT_EQ(failure([&] { files_.copy(file_, root_ / "copy"); }), Kind::other);
  EXPECT_EQ(files_.info(file_)->type, Type::other);
}

TEST_F(FileManagerContract, RefusesAFileThatIsTooLarge) {
  files_.writeAtomically(file_, "x");
  std::filesystem::resize_file(file_, 1ULL << 37U);
  EXPECT_EQ(failure([&] { (void)files_.read(file_); }), Kind::other);
  EXPECT_EQ(failure([&] { files_.copy(file_, root_ / "copy"); }), Kind::other);
}

TEST_F(FileManagerContract, RemovesWhatKilledWritersLeft) {
  const pid_t dead = ::fork();
  if (dead == 0) ::_exit(0);
  ASSERT_EQ(::waitpid(dead, nullptr, 0), dead);
  const std::string left = ".velto-" + std::to_string(dead) + "-0123456789abcdef";
  const std::vector<std::string> stay = {
      ".velto-" + std::to_string(::getpid()) + "-0123456789abcdef",
      ".velto-" + std::to_string(dead) + "-folder",
      ".velto--1-0123456789abcdef",
      ".velto-0-0123456789abcdef",
      ".velto-99999999999999999999-0123456789abcdef",
      left + "0",
      "x" + left,
  };
  files_.createDirectory(root_ / "in");
  for (const std::string& name : stay) files_.append(root_ / "in" / name, "x");
  files_.append(root_ / "in" / left, "x");
  files_.writeAtomically(file_, "target");
  backend_.makeLink(root_ / "in" / (left.substr(0, left.size() - 1) + "0"), file_);
  files_.createDirectory(root_ / "in" / (left.substr(0, left.size() - 1) + "1") / "full");
  backend_.makeLink(root_ / "link", "in");
  files_.removeAbandonedWrites(root_ / "link");
  EXPECT_TRUE(files_.exists(root_ / "in" / left)) << "behind a link nothing is touched";
  files_.removeAbandonedWrites(root_ / "none");
  files_.removeAbandonedWrites(root_ / "in");
  std::vector<std::string> expected = stay;
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(files_.list(root_ / "in"), expected);
  EXPECT_EQ(files_.read(file_), "target");
}

TEST_F(FileManagerContract, ANameWithANulIsNoOtherName) {
  files_.writeAtomically(file_, "kept");
  const std::filesystem::path cut = file_.native() + std::string("\0.json", 6);
  EXPECT_TRUE(failure([&] { files_.writeAtomically(cut, "lost"); }));
  EXPECT_TRUE(failure([&] { files_.remove(cut); }));
  EXPECT_FALSE(files_.exists(cut));
  EXPECT_EQ(files_.read(file_), "kept");
}

#endif

}  // namespace
}  // namespace velto
