// What an object knows of its references: those that it had when it was last loaded or saved, so that it finds out
// which of them another object or program has deleted since. An object keeps its link rows in line by this.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "storage/links.h"
#include "tarn/storage/blocks.h"

namespace tarn {

class LinkKeeper {
 public:
  /// Whose references they are, of which kinds, and under which name they are told.
  struct Owner {
    Object& object;
    std::vector<std::string_view> kinds;
    std::string title;

    bool has(std::string_view kind) const;
  };
  /// The object closes up after references that were cleared.
  using CloseUp = std::function<void(const std::vector<ClearedReference>&)>;

  /// After a load: references without a link row are cleared and logged, the others are known from now on. Where what
  /// they refer to was not deleted, the link row was lost: the object's inputs as they were are kept for `put_back`.
  void repair(const Owner& owner, LinkRows& rows, const CloseUp& close_up, const Blocks& inputs);
  /// Before a save: references whose link rows were lost come back, but for blocks in which the client changed what was
  /// cleared.
  void put_back(const Owner& owner, const Blocks& inputs);
  /// Of a default, which has no link rows: references to what is not there are cleared.
  void repair_default(const Owner& owner, LinkRows& rows, const CloseUp& close_up);
  /// Before a save: so are those to what was deleted since, also where another entity has its index by now. What
  /// another program did in between shows by the link row alone.
  void clear_deleted(const Owner& owner, LinkRows& rows, const CloseUp& close_up);
  /// Brings the link rows in line with the references, which are known from now on.
  void write(const Owner& owner, LinkRows& rows);

 private:
  void remember(const Owner& owner, const LinkRows& rows, const std::vector<Use>& uses);

  /// The references of a kind, with what tells deletions since: the entity's index then, the program's deletions, other
  /// programs' commits.
  struct Known {
    std::vector<Use> uses;
    int16_t index = 0;
    size_t deletions = 0;
    int64_t foreign_version = 0;
  };
  std::map<std::string_view, Known> known_;
  /// The inputs with references that have lost their link rows, and without them.
  struct Unlinked {
    std::vector<std::byte> with, without;
  };
  std::optional<Unlinked> unlinked_;
  bool cleared_deleted_ = false;  // which the next save settles
};

}  // namespace tarn
