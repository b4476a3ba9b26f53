#include "tarn/storage/record_file.h"

#include <algorithm>

#include "platform/file_store.h"
#include "tarn/base/log.h"
#include "tarn/reflect/members.h"
#include "tarn/storage/entity.h"

namespace tarn {

const std::string& RecordFile::name() const {
  if (name_.empty()) {
    fail(ErrorNumber::FileNotFound,
         "The " + std::string(entity_.info().name) + " has no record file; set its FileName.");
  }
  return name_;
}

void RecordFile::check(std::optional<int16_t> /*index*/, std::string_view operation) const {
  if (wrong_size_message_.empty()) return;
  const uint64_t size = !name_.empty() && files().exists(name_) ? files().size(name_) : 0;
  if (size == 0 || size % record_size() != 0)
    throw Error(static_cast<int>(ErrorNumber::UnknownFormat), std::string(operation), std::string(wrong_size_message_));
}

size_t RecordFile::read_bytes(int16_t index, std::vector<std::byte>& bytes) const {
  bytes.resize(record_size());
  const size_t got = files().read(name(), static_cast<uint64_t>(index) * bytes.size(), bytes);
  if (got > 0 && got < bytes.size()) {
    log().message("Record " + std::to_string(index) + " of " + name_ + " is cut short: " + std::to_string(got) +
                  " of " + std::to_string(bytes.size()) + " bytes; the rest reads as zeros.");
  }
  return got;
}

void RecordFile::read(const LoadContext& load) {
  const auto record = [&] { return "record " + std::to_string(load.index); };
  if (load.index < 0) fail(ErrorNumber::SubscriptOutOfRange, "There is no " + record() + " in " + name() + ".");
  std::vector<std::byte> bytes;
  if (read_bytes(load.index, bytes) == 0) {
    if (!files().exists(name_))
      fail(ErrorNumber::FileNotFound,
           name_ + ", which has " + record() + ", is not there. Restore the file from a copy.");
    fail(ErrorNumber::InputPastEnd, name_ + " ends before " + record() + ": it has " +
                                        std::to_string(files().size(name_)) + " bytes, a record has " +
                                        std::to_string(bytes.size()) +
                                        ". Restore the file from a copy, or delete the entity.");
  }
  load.begin(true);
  scatter(bytes, blocks_);
  load.inputs_read();
}

bool RecordFile::read_default() {
  std::vector<std::byte> bytes;
  read_bytes(0, bytes);
  const bool there = hold_anything({bytes});
  scatter(bytes, blocks_);
  return there;
}

void RecordFile::write(int16_t index, const SaveContext& /*save*/) {
  std::vector<std::byte> bytes = gathered(blocks_);
  const uint64_t offset = static_cast<uint64_t>(index) * bytes.size();
  const uint64_t size = files().size(name());
  if (offset >= size && size % bytes.size() != 0) {
    log().message(name_ + " ends in a partial record (" + std::to_string(size / bytes.size()) +
                  "), which is filled up with zeros.");
  }
  files().write(name_, offset, std::move(bytes), entity_.GetDBHandle());
}

}  // namespace tarn
