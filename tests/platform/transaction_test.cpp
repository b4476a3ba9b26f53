// Rows and record files change together or not at all: in nested transactions, when a write fails, when the process
// dies.

#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/file_store.h"
#include "project/defaults.h"
#include "project/kinds.h"
#include "support/temp_project.h"

namespace tarn {
namespace {

using test::bytes_of;
using test::FaultyFiles;

class TransactionTest : public test::ProjectTest {
 protected:
  std::string state() {
    std::string all = rows("WindowIndex") + rows("AirSystemIndex") + bytes_of(project.WindowFilename());
    for (const char* name : {"A.DAT", "B.DAT", "C.DAT", "D.DAT"}) {
      const bool there = std::filesystem::exists(file(name));
      all += there ? "\n" + std::string(name) + "=" + bytes_of(file(name)) : "";
    }
    return all;
  }
  std::string file(const std::string& suffix) { return folder / ("JOB" + suffix); }
  std::vector<std::byte> bytes(std::string_view text) {
    const auto span = std::as_bytes(std::span(text));
    return {span.begin(), span.end()};
  }
  /// Whole files, large ones and small ones, which are replaced and removed, and one that is made.
  void make_whole_files() {
    test::write_bytes(file("A.DAT"), std::string(70000, 'a'));
    test::write_bytes(file("B.DAT"), "bbb");
    test::write_bytes(file("D.DAT"), std::string(5000, 'd'));
  }
  void change_whole_files() {
    files().replace(file("A.DAT"), bytes("short"), database);
    files().remove(file("B.DAT"), database);
    files().replace(file("C.DAT"), std::vector<std::byte>(80'000, std::byte{'c'}), database);
    files().replace(file("D.DAT"), bytes("shorter"), database);
  }
  void save_many(int count) {
    for (int i = 0; i < count; ++i) saved_window("many");
  }
};

TEST_F(TransactionTest, AnExceptionAmongAThousandSavesUndoesRowsAndBytes) {
  saved_window("A");
  const std::string before = state();
  EXPECT_THROW(
      {
        Transaction outer;
        save_many(500);
        auto changed = project.NewWindow();
        changed->Load(1);
        changed->Name = "B";
        changed->Save();
        save_many(500);
        throw std::runtime_error("in the middle");
        outer.commit();
      },
      std::runtime_error);
  EXPECT_EQ(state(), before);
  EXPECT_EQ(project.NewWindow()->GetFreeIndex(), 2);
}

TEST_F(TransactionTest, ANewFileOfARolledBackTransactionIsNeverMade) {
  {
    Transaction undone;
    save_many(3);
    EXPECT_FALSE(std::filesystem::exists(project.WindowFilename()));
  }
  EXPECT_FALSE(std::filesystem::exists(project.WindowFilename()));
}

TEST_F(TransactionTest, AnInnerRollbackLeavesWhatTheOuterDid) {
  {
    Transaction outer;
    auto window = saved_window("outer");
    {
      Transaction inner;
      window->Name = "inner";
      window->Save();
      saved_window("gone");
      auto read = project.NewWindow();
      read->Load(1);
      EXPECT_EQ(read->Name.trimmed(), "inner") << "reads inside see the writes";
    }
    {
      Transaction inner;
      saved_window("kept");
      inner.commit();
    }
    outer.commit();
  }
  auto read = project.NewWindow();
  read->Load(1);
  EXPECT_EQ(read->Name.trimmed(), "outer");
  read->Load(2);
  EXPECT_EQ(read->Name.trimmed(), "kept");
  EXPECT_EQ(bytes_of(project.WindowFilename()).size(), 3U * 555);
  EXPECT_EQ(count("WindowIndex"), 2);
}

TEST_F(TransactionTest, AFileOperationThatFailsLeavesTheOldStateOrTheNew) {
  auto window = saved_window("A");
  make_whole_files();
  const std::string before = state();
  int failures = 0, late = 0;
  for (int operations = 0;; ++operations) {
    FaultyFiles faulty(operations);
    window->Height = 5.0F;
    window->Name = "B";
    const int failed = test::error_number([&] {
      Transaction all;
      change_whole_files();
      window->Save();
      all.commit();
    });
    const bool met = faulty.left < 0;
    faulty.left = -1;
    EXPECT_EQ(Engine::of_thread().Workspaces(0).depth(), 0U);
    EXPECT_EQ(window->Index(), 1);
    auto read = project.NewWindow();
    read->Load(1);
    EXPECT_EQ(read->Name.trimmed(), failed ? "A" : "B") << operations;
    if (failed == 0) {
      files().settle();
      EXPECT_EQ(bytes_of(file("C.DAT")).size(), 80'000U) << operations;
      window->Name = "A";
      window->Height = 0;
      window->Save();
      std::filesystem::remove(file("C.DAT"));
      make_whole_files();
    }
    if (!met) break;
    ++(failed == 0 ? late : failures);
    EXPECT_EQ(state(), before) << operations;
  }
  EXPECT_GT(failures, 2);
  EXPECT_GT(late, 5) << "after the commit the save is kept, and its bytes follow";
}

TEST_F(TransactionTest, AProcessThatDiesAnywhereLeavesTheOldStateOrTheNew) {
  saved_window("old");
  saved_window("other");
  make_whole_files();
  const std::string old_state = state();
  database.reset();
  std::string new_state;
  int died = 0;
  for (int operations = 0; new_state.empty(); ++operations) {
    const pid_t child = fork();
    if (child == 0) {
      FaultyFiles faulty(operations, [] { _exit(7); });
      Transaction outer;
      database = host().database(project.IndexDBName());
      change_whole_files();
      auto window = project.NewWindow();
      window->Load(1);
      window->Name = "new";
      window->Save();
      saved_window("added");
      outer.commit();
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WEXITSTATUS(status) == 7) ++died;
    database = host().database(project.IndexDBName());
    auto window = project.NewWindow();
    window->Load(1);
    const bool saved = count("WindowIndex WHERE szName IN ('new', 'added')") == 2;
    EXPECT_EQ(window->Name.trimmed(), saved ? "new" : "old") << operations;
    window.reset();
    database.reset();  // the last program leaves the files complete
    database = host().database(project.IndexDBName());
    if (saved) {
      EXPECT_EQ(bytes_of(project.WindowFilename()).size(), 4U * 555);
      new_state = state();
      EXPECT_EQ(new_state.substr(new_state.find("\nA.DAT")),
                "\nA.DAT=short\nC.DAT=" + std::string(80'000, 'c') + "\nD.DAT=shorter");
    } else {
      EXPECT_EQ(state(), old_state) << operations;
    }
    database.reset();
  }
  EXPECT_GT(died, 3);
}

/// Its new file must not take the name of one that a row still has.
TEST_F(TransactionTest, ADeathWhileOlderBytesAreSettledLeavesAWholeFile) {
  constexpr size_t kLarge = 70'000;
  const auto save_and_die = [&](int operations, char letter, size_t in_place) {
    const pid_t child = fork();
    if (child == 0) {
      FaultyFiles faulty(operations, [] { _exit(7); });
      Transaction all;
      database = host().database(project.IndexDBName());
      files().replace(file("A.DAT"), std::vector<std::byte>(kLarge, std::byte(letter)), database);
      if (in_place > 0) files().write(file("Z.DAT"), 0, std::vector<std::byte>(in_place), database);
      all.commit();
      _exit(0);  // with rows that are not settled
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WEXITSTATUS(status);
  };
  database.reset();
  int died = 0;
  for (int operations = 0, status = 7; status == 7; ++operations) {
    ASSERT_EQ(save_and_die(1'000'000, 'a', 300'000), 0);
    status = save_and_die(operations, 'b', 0);
    died += status == 7;
    host().database(project.IndexDBName())->settle();
    const std::string all = bytes_of(file("A.DAT"));
    EXPECT_TRUE(all == std::string(kLarge, 'a') || all == std::string(kLarge, 'b')) << operations;
  }
  EXPECT_GT(died, 3);
}

TEST_F(TransactionTest, ANewFileThatCouldNotTakeItsPlaceYetIsReadAllTheSame) {
  constexpr size_t kLarge = 80'000;
  const auto replace = [&](char letter) {
    Transaction transaction;
    files().write(file("A.DAT"), 0, bytes("x"), database);  // keeps the old file open
    files().replace(file("A.DAT"), std::vector<std::byte>(kLarge, std::byte(letter)), database);
    transaction.commit();
  };
  replace('a');
  int failures = 0;
  for (int operations = 0; operations < 6; ++operations) {
    replace('a');
    log.messages.clear();
    bool done = true;
    {
      const FaultyFiles faulty(operations);
      try {
        replace('b');
      } catch (const Error&) {
        done = false;
      }
    }
    failures += done && !log.messages.empty();
    std::vector<std::byte> read(kLarge);
    EXPECT_EQ(files().read(file("A.DAT"), 0, read), kLarge);
    EXPECT_EQ(read, std::vector<std::byte>(kLarge, std::byte(done ? 'b' : 'a'))) << operations;
  }
  EXPECT_GT(failures, 0) << "a commit whose new file could not take its place";
}

TEST_F(TransactionTest, WhatADeadProgramLeftGoesWithTheNextOpening) {
  database.reset();
  for (const char* name : {"WIN.DAT-new7", "INX.MDB-new", "INX.MDB-new-journal", "WIN.DAT-new", "WIN.DAT-newer"})
    test::write_bytes(file(name), "left");
  host().database(project.IndexDBName());
  for (const char* gone : {"WIN.DAT-new7", "INX.MDB-new", "INX.MDB-new-journal"})
    EXPECT_FALSE(std::filesystem::exists(file(gone))) << gone;
  for (const char* not_ours : {"WIN.DAT-new", "WIN.DAT-newer"})
    EXPECT_TRUE(std::filesystem::exists(file(not_ours))) << not_ours;
}

TEST_F(TransactionTest, BytesWithoutADatabaseComeAfterWhatIsPending) {
  make_whole_files();
  Transaction removes;
  files().remove(file("A.DAT"), database);
  files().write(file("B.DAT"), 0, bytes("old"), database);
  removes.commit();
  Transaction writes;
  files().replace(file("A.DAT"), bytes("results"), nullptr);
  files().write(file("B.DAT"), 0, bytes("new"), nullptr);
  writes.commit();
  files().settle();
  EXPECT_EQ(bytes_of(file("A.DAT")) + " " + bytes_of(file("B.DAT")), "results new");
}

TEST_F(TransactionTest, WholeFilesChangeLevelByLevel) {
  make_whole_files();
  const auto seen = [&](const char* name) {
    std::string text(8, '.');
    const size_t got = files().read(file(name), 0, std::as_writable_bytes(std::span(text)));
    return text.substr(0, got) + (files().exists(file(name)) ? "" : " (gone)");
  };
  Transaction outer;
  change_whole_files();
  {
    Transaction inner;
    files().remove(file("A.DAT"), database);
    files().write(file("B.DAT"), 1, bytes("x"), database);
    EXPECT_EQ(seen("A.DAT") + "/" + seen("B.DAT") + "/" + seen("C.DAT"), std::string(" (gone)/\0x/cccccccc", 19));
    EXPECT_EQ(files().size(file("A.DAT")), 0U);
  }
  EXPECT_EQ(seen("A.DAT") + "/" + seen("B.DAT"), "short/ (gone)");
  {
    Transaction inner;
    files().write(file("A.DAT"), 5, bytes("er"), database);
    inner.commit();
  }
  outer.commit();
  EXPECT_EQ(bytes_of(file("A.DAT")), "shorter");
  EXPECT_FALSE(std::filesystem::exists(file("B.DAT")));
}

/// Its connection can be told that the disk is full.
class FullDiskTest : public TransactionTest {
 protected:
  using Hook = void (*)();
  static int keep(sqlite3* opened, char**, const void*) {
    connection = opened;
    return SQLITE_OK;
  }
  void SetUp() override {
    sqlite3_auto_extension(reinterpret_cast<Hook>(&keep));
    TransactionTest::SetUp();
    sqlite3_cancel_auto_extension(reinterpret_cast<Hook>(&keep));
  }
  static void limit_pages(int64_t pages) {
    const std::string sql = "PRAGMA max_page_count = " + std::to_string(pages);
    ASSERT_EQ(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
  }
  static inline sqlite3* connection = nullptr;
};

TEST_F(FullDiskTest, AFullDiskEndsTheWholeTransaction) {
  saved_window("A");
  const std::string before = state();
  const int64_t pages = database->OpenRecordset("PRAGMA page_count").Fields("page_count").integer();
  EXPECT_NE(0, test::error_number([&] {
              Transaction outer;
              limit_pages(pages);
              std::string failed;
              for (int i = 0; i < 2000 && failed.empty(); ++i) {
                try {
                  saved_window("W" + std::to_string(i));
                } catch (const Error& full) {
                  failed = full.what();
                }
              }
              EXPECT_NE(failed, "") << "the limit was never reached";
              limit_pages(100000);
              saved_window("after");
              outer.commit();
            }));
  EXPECT_EQ(state(), before);
  saved_window("usable");
  EXPECT_EQ(count("WindowIndex"), 2);
}

TEST_F(TransactionTest, AClientCannotEndTheTransactionOfASaveAtWork) {
  auto window = saved_window("A");
  window->OnUpdateDependencies.listener = [](bool&) {
    EXPECT_EQ(test::error_number([] { Engine::of_thread().Workspaces(0).Rollback(); }), 3034);
    Engine::of_thread().Workspaces(0).BeginTrans();  // left open: the save must not take it along
  };
  EXPECT_EQ(test::error_number([&] { window->Save(); }), 3034);
  EXPECT_EQ(Engine::of_thread().Workspaces(0).depth(), 0U);
}

TEST_F(TransactionTest, WritesWithoutADatabaseFollowTheTransactionTheyAreIn) {
  auto window = saved_window("A");
  const std::string before = state();
  WIN_Window loose;
  loose.FileName = project.WindowFilename();
  loose.Height = 9.0F;
  {
    Transaction undone;
    loose.SaveDefault();
    window->Height = 9.0F;
    window->Save();
  }
  EXPECT_EQ(state(), before);
  loose.SaveDefault();
  EXPECT_EQ(bytes_of(project.WindowFilename()).substr(257, 4), std::string("\0\0\x10\x41", 4));
}

TEST_F(TransactionTest, OneFileUnderTwoNamesIsOneFile) {
  const auto folder_before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path);
  EXPECT_EQ(host().database("JOBINX.MDB"), database);
  {
    Transaction undone;
    auto window = saved_window("A");
    WIN_Window relative;
    relative.SetDBHandle(database);
    relative.FileName = "JOBWIN.DAT";
    relative.Load(1);
    EXPECT_EQ(relative.Name.trimmed(), "A");
  }
  std::filesystem::current_path(folder_before);
}

TEST_F(TransactionTest, ARolledBackSaveTakesItsNameBack) {
  write_default_records(project);
  for (const EntityKind& kind : entity_kinds()) {
    const auto entity = make_entity(project, kind);
    entity->CreateDefault();
    entity->Reset(true);
    const auto nameless = gathered(entity->file().inputs());
    Engine::of_thread().Workspaces(0).BeginTrans();
    entity->Save();
    EXPECT_NE(gathered(entity->file().inputs()), nameless) << kind.one;
    Engine::of_thread().Workspaces(0).Rollback();
    EXPECT_EQ(gathered(entity->file().inputs()), nameless) << kind.one;
    EXPECT_EQ(entity->Index(), 0) << kind.one;
  }
}

}  // namespace
}  // namespace tarn
