#include <filesystem>
#include <random>

#include "plain_project.h"
#include "report.h"
#include "storage/kind.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"

namespace tarn::bench {
namespace {

constexpr int kWindows = 1000;  // in one run
constexpr double kAllowed = 1.3;
constexpr double kGrowth = 1.05;  // none, but for the noise of two medians

/// A sample open on both sides, with the windows that are saved and loaded.
class Bench {
 public:
  Bench(const std::string& folder, const Shape& shape)
      : size_(shape.windows),
        sample_(make_sample(folder, shape)),
        plain_(sample_.floor),
        database_(Database::open(sample_.ours.index)) {
    for (int i = 0; i < kWindows; ++i) {
      indexes_.push_back(1 + i * (size_ / kWindows));
      windows_.push_back(new_window());
      records_.push_back(sample_window(indexes_.back()));
    }
    std::shuffle(indexes_.begin(), indexes_.end(), std::mt19937(1));
  }

  double saves(Report& report, const std::string& name);
  /// Each save a transaction of its own.
  void single_saves(Report& report, const std::string& name);
  double additions(Report& report, const std::string& name);
  void loads(Report& report, const std::string& name, bool in_transaction);

 private:
  Ptr<WIN_Window> new_window() const {
    auto window = std::make_shared<WIN_Window>();
    window->FileName = sample_.ours.windows;
    window->SetDBHandle(database_);
    return window;
  }
  /// Takes the windows past the sample's own away again, rows and bytes.
  void cut_back_ours() {
    const Cell last[]{cell(size_)};
    Transaction transaction;
    database_->Execute("DELETE FROM WindowIndex WHERE nIndex > ?", last);
    transaction.commit();
    std::filesystem::resize_file(sample_.ours.windows, file_size());
  }
  void cut_back_floor() {
    plain_.remove_above(size_);
    std::filesystem::resize_file(sample_.floor.windows, file_size());
  }
  uintmax_t file_size() const { return static_cast<uintmax_t>(size_ + 1) * sizeof(WindowRecord); }

  int size_;
  Sample sample_;
  PlainProject plain_;
  Ptr<Database> database_;
  std::vector<int> indexes_;
  std::vector<Ptr<WIN_Window>> windows_;
  std::vector<WindowRecord> records_;
};

double Bench::saves(Report& report, const std::string& name) {
  for (size_t i = 0; i < kWindows; ++i) {
    windows_[i]->Load(static_cast<int16_t>(indexes_[i]));
    plain_.load(indexes_[i], records_[i]);
  }
  const Side ours{[this] {
    Transaction transaction;
    for (const auto& window : windows_) {
      window->Height = window->Height + 1.0F;
      window->Save();
    }
    transaction.commit();
  }};
  const Side floor{[this] {
    plain_.begin();
    for (size_t i = 0; i < kWindows; ++i) {
      records_[i].Height = records_[i].Height + 1.0F;
      plain_.save(indexes_[i], records_[i]);
    }
    plain_.commit_as_one();
  }};
  return report.compare({name, kWindows, kAllowed, 61}, ours, floor);
}

void Bench::single_saves(Report& report, const std::string& name) {
  constexpr size_t kSaves = 100;
  for (size_t i = 0; i < kSaves; ++i) {
    windows_[i]->Load(static_cast<int16_t>(indexes_[i]));
    plain_.load(indexes_[i], records_[i]);
  }
  const Side ours{[this] {
    for (size_t i = 0; i < kSaves; ++i) {
      windows_[i]->Height = windows_[i]->Height + 1.0F;
      windows_[i]->Save();
    }
  }};
  const Side floor{[this] {
    for (size_t i = 0; i < kSaves; ++i) {
      plain_.begin();
      records_[i].Height = records_[i].Height + 1.0F;
      plain_.save(indexes_[i], records_[i]);
      plain_.commit();
    }
  }};
  report.compare({name, kSaves, 1.3, 15}, ours, floor);
}

double Bench::additions(Report& report, const std::string& name) {
  const Side ours{.run =
                      [this] {
                        Transaction transaction;
                        for (const auto& window : windows_) window->Save();
                        transaction.commit();
                      },
                  .before =
                      [this] {
                        for (const auto& window : windows_) window->Reset();
                      },
                  .after = [this] { cut_back_ours(); }};
  const Side floor{.run =
                       [this] {
                         plain_.begin();
                         for (const WindowRecord& record : records_) plain_.add(record);
                         plain_.commit_as_one();
                       },
                   .after = [this] { cut_back_floor(); }};
  return report.compare({name, kWindows, kAllowed, 61}, ours, floor);
}

void Bench::loads(Report& report, const std::string& name, bool in_transaction) {
  const Ptr<WIN_Window> window = new_window();
  Workspace& workspace = Engine::of_thread().Workspaces(0);
  const Side ours{[&] {
    if (in_transaction) workspace.BeginTrans();
    for (const int index : indexes_) window->Load(static_cast<int16_t>(index));
    if (in_transaction) workspace.CommitTrans();
  }};
  WindowRecord record;
  const Side floor{[&] {
    if (in_transaction) plain_.begin();
    for (const int index : indexes_) plain_.load(index, record);
    if (in_transaction) plain_.commit();
  }};
  report.compare({name, kWindows, kAllowed, 61}, ours, floor);
}

}  // namespace

void window_cases(Report& report, const std::string& folder) {
  Bench small(folder + "/small", {.windows = 1000, .spaces = 1000, .systems = 50, .plants = 5, .buildings = 1});
  Bench large(folder + "/large", {.windows = 30'000, .spaces = 30'000, .systems = 1500, .plants = 150, .buildings = 1});
  Bench unused(folder + "/unused", {.windows = 1000});
  const double saved_small = small.saves(report, "save 1,000 windows, in a table of 1,000");
  const double saved_large = large.saves(report, "save 1,000 windows, in a table of 30,000");
  report.growth("  ratio at 30,000 beside 1,000", saved_large, saved_small, kGrowth);
  unused.saves(report, "save 1,000 windows that nothing uses");
  small.single_saves(report, "save 100 windows, each by itself");
  const double added_small = small.additions(report, "save 1,000 new windows, to a table of 1,000");
  const double added_large = large.additions(report, "save 1,000 new windows, to a table of 30,000");
  report.growth("  ratio at 30,000 beside 1,000", added_large, added_small, kGrowth);
  for (const auto& [bench, size] : {std::pair{&small, "1,000"}, std::pair{&large, "30,000"}}) {
    bench->loads(report, std::string("load 1,000 windows of ") + size + " in one transaction", true);
    bench->loads(report, std::string("load 1,000 windows of ") + size + ", each by itself", false);
  }
}

}  // namespace tarn::bench
