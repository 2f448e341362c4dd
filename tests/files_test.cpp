#include "platform/files.h"

#include <csignal>
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/disk_watch.h"
#include "tests/platform_testing.h"
#include "tests/testing.h"

namespace zep::platform {
namespace {

namespace fs = std::filesystem;
using testing::Say;

class Files : public ::testing::Test {
 protected:
  testing::TempFolder folder_;
  std::string in_ = folder_.Path() + "/";
};

TEST_F(Files, AnyBytesUnderAnyNameComeBack) {
  const std::string bytes("\0\r\n\xFF text", 9);
  const std::string path = in_ + "Données 数.bin";
  EXPECT_EQ(Say(WriteWholeFile(path, bytes)), "ok");
  EXPECT_EQ(ReadWholeFile(path).bytes, bytes);
  EXPECT_EQ(ListFolder(folder_.Path()), std::vector<std::string>{"Données 数.bin"});
}

TEST_F(Files, WhatCannotBeReadSaysWhyAndWhatToDo) {
  const std::string file = folder_.Write("a.bin", "12345678901");
  folder_.Write("b.bin", "x");
  fs::permissions(in_ + "b.bin", fs::perms{0});
  const struct {
    std::string name, path, error;
  } rows[] = {
      {"missing file", in_ + "x.bin",
       "2 There is no file " + in_ +
           "x.bin. Please check its name and folder, or choose another file."},
      {"missing folder", in_ + "x/x.bin",
       "2 There is no folder " + in_ + "x. Please make the folder, or choose another one."},
      {"folder", in_, "21 " + in_ + " is a folder. Please choose a file."},
      {"endless device", "/dev/zero",
       "22 /dev/zero is not an ordinary file. Please choose another file."},
      {"too long", file,
       "27 " + file +
           " is longer than 10 bytes, so it cannot be the right file. Please choose another file."},
      {"not allowed", in_ + "b.bin",
       "13 You do not have the permission that this needs for " + in_ +
           "b.bin. Please change the permissions of the file, or choose another file."},
  };
  const testing::OrdinaryUser user;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const FileContents contents = ReadWholeFile(row.path, 10);
    EXPECT_EQ(Say(contents.error), row.error);
    EXPECT_EQ(contents.error.subject, row.path);
    EXPECT_EQ(contents.bytes, "");
  }
  EXPECT_EQ(ReadWholeFile(file, 11).bytes, "12345678901");
}

TEST_F(Files, WhatCannotBeWrittenSaysWhyAndStaysAsItWas) {
  folder_.Write("open/old.ops", "old");
  folder_.Write("closed/old.ops", "old");
  fs::permissions(in_ + "open", fs::perms{0777});
  fs::permissions(in_ + "open/old.ops", fs::perms{0444});
  fs::permissions(in_ + "closed/old.ops", fs::perms{0666});
  fs::permissions(in_ + "closed", fs::perms{0555});
  const struct {
    std::string name, path, error;
  } rows[] = {
      {"full disk", "/dev/full",
       "28 There is no space left for /dev/full. Please delete files that are not needed, or "
       "choose a folder on another disk."},
      {"folder", in_ + "open", "21 " + in_ + "open is a folder. Please choose a file."},
      {"old file, closed folder", in_ + "closed/old.ops",
       "13 You are not allowed to make files in the folder " + in_ +
           "closed. Please change the permissions of the folder, or choose another one."},
      {"read-only file", in_ + "open/old.ops",
       "13 You do not have the permission that this needs for " + in_ +
           "open/old.ops. Please change the permissions of the file, or choose another file."},
  };
  const testing::OrdinaryUser user;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const SystemError error = WriteWholeFile(row.path, std::string(100'000, 'n'));
    EXPECT_EQ(Say(error), row.error);
    EXPECT_EQ(error.subject, row.path);
  }
  EXPECT_EQ(Say(WriteWholeFile("/dev/null", "x")), "ok");
  EXPECT_EQ(folder_.Read("open/old.ops"), "old");
  EXPECT_EQ(folder_.Read("closed/old.ops"), "old");
}

TEST_F(Files, ADiskThatFillsUpHalfwayLeavesTheOldFileAndNothingElse) {
  const std::string file = folder_.Write("a.ops", "old");
  const std::string limit = "prlimit --pid " + std::to_string(getpid()) + " --fsize=";
  std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(std::system((limit + "1000:").c_str()), 0);
  const SystemError error = WriteWholeFile(file, std::string(5000, 'n'));
  ASSERT_EQ(std::system((limit + "unlimited:").c_str()), 0);
  EXPECT_EQ(Say(error), "27 There is no space left for " + file +
                            ". Please delete files that are not needed, or choose a folder on "
                            "another disk.");
  EXPECT_EQ(folder_.Read("a.ops"), "old");
  EXPECT_EQ(ListFolder(folder_.Path()), std::vector<std::string>{"a.ops"});
}

TEST_F(Files, WhatAKilledProgramOfTheSameNumberLeftDoesNotStopTheWriting) {
  folder_.Write("a.ops." + std::to_string(getpid()) + ".tmp", "half");
  EXPECT_EQ(Say(WriteWholeFile(in_ + "a.ops", "new")), "ok");
  EXPECT_EQ(folder_.Read("a.ops"), "new");
}

TEST_F(Files, AReplacedFileKeepsItsRightsAndALinkStaysALink) {
  const std::string file = folder_.Write("real/a.ops", "old");
  fs::permissions(file, fs::perms{0640});
  fs::create_symlink(file, in_ + "link.ops");
  EXPECT_EQ(Say(WriteWholeFile(in_ + "link.ops", "new")), "ok");
  EXPECT_TRUE(fs::is_symlink(in_ + "link.ops"));
  EXPECT_EQ(folder_.Read("real/a.ops"), "new");
  EXPECT_EQ(fs::status(file).permissions(), fs::perms{0640});
}

TEST_F(Files, ASuccessIsOnTheDiskNameAndAll) {
  folder_.Write("real/a.ops", "old bytes");
  fs::create_symlink(in_ + "real/a.ops", in_ + "link.ops");
  const auto written = [](const std::string& name) {
    return "sync " + name + ".PID.tmp 3 bytes\nrename " + name + ".PID.tmp " + name +
           "\nsync folder\n";
  };
  testing::DiskWatch disk;
  WriteWholeFile(in_ + "new.ops", "new");
  EXPECT_EQ(disk.Take(), written("new.ops"));
  WriteWholeFile(in_ + "link.ops", "new");
  EXPECT_EQ(disk.Take(), written("a.ops"));
  KeepCopy(in_ + "new.ops", in_ + "copy.ops");
  EXPECT_EQ(disk.Take(), written("copy.ops"));

  FileWriter writer;
  writer.Open(in_ + "new.ops", WriteMode::kAppend);
  writer.Write(" and");
  EXPECT_EQ(disk.Take(), "") << "bit by bit, not bit after bit";
  writer.Flush();
  EXPECT_EQ(disk.Take(), "sync new.ops 7 bytes\n");
}

TEST_F(Files, AWriterAppendsOrReplaces) {
  const std::string path = in_ + "upgrade.log";
  FileWriter writer;
  for (const WriteMode mode : {WriteMode::kAppend, WriteMode::kAppend}) {
    EXPECT_EQ(Say(writer.Open(path, mode)), "ok");
    writer.Write("line\n");
    EXPECT_EQ(Say(writer.Flush()), "ok");
    EXPECT_EQ(folder_.Read("upgrade.log")->back(), '\n') << "flushed, not closed";
    EXPECT_EQ(Say(writer.Close()), "ok");
  }
  EXPECT_EQ(folder_.Read("upgrade.log"), "line\nline\n");
  EXPECT_EQ(Say(writer.Open(path, WriteMode::kReplace)), "ok");
  writer.Write("a");
  EXPECT_EQ(Say(writer.Close()), "ok");
  EXPECT_EQ(folder_.Read("upgrade.log"), "a");
}

TEST_F(Files, AWriterKeepsItsFirstError) {
  const std::string full =
      "28 There is no space left for /dev/full. Please delete files that are not needed, or "
      "choose a folder on another disk.";
  FileWriter writer;
  EXPECT_EQ(Say(writer.Open("/dev/full", WriteMode::kReplace)), "ok");
  writer.Write(std::string(100'000, 'x'));
  EXPECT_EQ(Say(writer.Error()), full);
  EXPECT_EQ(Say(writer.Close()), full);
  EXPECT_EQ(Say(writer.Open("/dev/full", WriteMode::kAppend)), "ok") << "a new start";
  writer.Write("x");
  EXPECT_EQ(Say(writer.Close()), full) << "found only when the last bytes go out";
}

TEST_F(Files, FoldersAreMadeAndFilesRenamedAndRemoved) {
  EXPECT_EQ(Say(MakeFolders(in_ + "a/b/c/")), "ok");
  EXPECT_TRUE(IsFolder(in_ + "a/b/c"));
  folder_.Write("one", "1");
  folder_.Write("two", "2");
  EXPECT_EQ(Say(RenameFile(in_ + "one", in_ + "two")), "ok");
  EXPECT_EQ(folder_.Read("two"), "1");
  EXPECT_FALSE(FileExists(in_ + "one"));
  EXPECT_EQ(Say(RemoveFile(in_ + "two")), "ok");
  EXPECT_FALSE(FileExists(in_ + "two"));
  EXPECT_EQ(RemoveFile(in_ + "a").number, 21) << "folders are left alone, empty ones too";
}

TEST_F(Files, AnAbsolutePathIsPlainAndNothingStaysNothing) {
  EXPECT_EQ(AbsolutePath("a/../b"), std::filesystem::current_path().string() + "/b");
  EXPECT_EQ(AbsolutePath("/x/./y"), "/x/y");
  EXPECT_EQ(AbsolutePath(""), "");
}

}  // namespace
}  // namespace zep::platform
