// A sectioned entity whose loads and saves name their sections by a mask. Inputs that were never loaded cannot be
// saved, and results that are not there are left alone.
#pragma once

#include "storage/sectioned_entity.h"

namespace tarn {

class MaskedEntity : public SectionedEntity {
 public:
  std::string DefFileName;  // the default's file

  void SaveDefault() override { write_default(DefFileName); }
  std::string default_file() const override { return DefFileName; }
  void select_all() override { mask_ = kAll; }
  /// No results, and changed until it is told otherwise.
  void renew() override;

 protected:
  // ---- what a kind declares
  /// The bits of a section; the header goes with all of them.
  virtual int32_t mask_of(size_t section) const = 0;
  /// Of a section of inputs, as a client knows it.
  virtual std::string_view name_of(size_t section) const = 0;
  virtual std::string no_default_message() const = 0;

  // ---- what it is given
  bool selected(size_t section) const override { return section == 0 || (mask_ & mask_of(section)) != 0; }
  bool keeps(size_t section) const override {
    return section >= first_result() && !selected(section) && (held_ & mask_of(section)) != 0;
  }
  bool is_loaded(size_t section) const { return (loaded_ & mask_of(section)) != 0; }
  void load(int32_t mask, int16_t index);
  void save(int32_t mask, bool after_calculations);
  /// The results of a section are dropped by the save at work.
  void drop(size_t section);
  /// Error `InvalidCall`: a save of inputs that the object never held would empty what the file has.
  void check_loaded() const;
  /// An engine's results are what the object has. A user's save leaves those alone that were neither loaded nor set.
  void select_results();
  void write_default(const std::string& path);
  void read_default() override;
  std::function<void()> keep_rest() override;
  void copy_memory(const StoredEntity& from, bool record_too) override;

 private:
  static constexpr int32_t kAll = INT32_MAX;
  template <typename F>
  void with_mask(int32_t mask, F operation);
  bool holds_anything(size_t section);

  int32_t mask_ = kAll;
  int32_t held_ = 0;       // while loading: what the object has of the same entity already
  int32_t loaded_ = kAll;  // sections that the object holds; all of them where it is new
};

}  // namespace tarn
