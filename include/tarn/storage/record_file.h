// The record file of a kind: record n at n times its length, record 0 the default. Reading never makes the file.
#pragma once

#include "tarn/storage/entity_file.h"

namespace tarn {

class RecordFile final : public EntityFile {
 public:
  RecordFile(StoredEntity& entity, std::string& name) : EntityFile(entity), name_(name) {}

  /// The memory that the record has next.
  void add(std::span<std::byte> bytes) { blocks_.push_back(bytes); }
  /// A file of another length than whole records is an error from now on.
  void need_whole_records(std::string_view message) { wrong_size_message_ = message; }
  size_t record_size() const { return size_of(blocks_); }

  Blocks blocks() const override { return blocks_; }
  bool one_for_each() const override { return false; }
  std::string path_for(int16_t /*index*/) const override { return name_; }
  std::string default_path() const override { return name_; }
  /// Error `UnknownFormat` for a file of another length than whole records, where the kind is strict about it.
  void check(std::optional<int16_t> index, std::string_view operation) const override;
  /// Errors `FileNotFound`, and `InputPastEnd` for a record beyond the end of the file. A partial record is logged, and
  /// what it lacks reads as zeros.
  void read(const LoadContext& load) override;
  /// A record of zeros is none: a file's first entity leaves them before it.
  bool read_default() override;
  void write(int16_t index, const SaveContext& save) override;
  void write_default() override { write(0, {}); }
  void copy(const EntityFile& from, bool /*content*/) override { name_ = from.default_path(); }

 private:
  const std::string& name() const;
  /// How much of the record the file has.
  size_t read_bytes(int16_t index, std::vector<std::byte>& bytes) const;

  std::string& name_;                    // the entity's FileName
  std::string_view wrong_size_message_;  // of a file that must have whole records; empty: any length does
  Blocks blocks_;
};

}  // namespace tarn
