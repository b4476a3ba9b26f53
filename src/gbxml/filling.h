// One import on its way into the project: entities that are made or met again, their names, and the types of the
// library that surfaces share.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <unordered_set>

#include "gbxml/drawing.h"
#include "gbxml/known_ids.h"
#include "platform/host.h"
#include "storage/kind.h"
#include "tarn/storage/entity.h"

namespace tarn {

/// A text as a field of `width` characters of the code page can have it; `changed` tells what was done to it.
struct FittedText {
  std::string text;
  bool was_cut = false, has_replaced = false;
};
FittedText fitted(std::string_view text, size_t width);

class Filling {
 public:
  Filling(COM_ProjectData& filled, Drawing& drawn, KnownIds& known)
      : project(filled), drawing(drawn), document(drawn.document), tally(drawn.tally), ids(known) {}

  /// An entity that came from this element before, as it is stored, or else a new one from the kind's default; `fill`
  /// sets its fields, and it is saved where they are others than before. Returns its index.
  template <typename C, typename F>
  int16_t entity(const Ptr<C>& object, const std::string& id, F fill) {
    const Before before = begin(*object, id);
    fill(*object, before.is_new);
    return end(*object, id, before, [&] { object->Save(); });
  }

  /// A name for an entity that none other of its kind has: the file's, cut to the width, its number added where it is
  /// taken; of a text without a character that the code page has, the id.
  std::string name_for(StoredEntity& entity, std::string_view wanted, std::string_view id, size_t width,
                       Element element = {});

  struct Before {
    bool is_new;
    std::vector<std::byte> bytes;
  };
  Before begin(StoredEntity& entity, const std::string& id);
  /// Saves what has changed, and remembers and counts the entity.
  int16_t end(StoredEntity& entity, const std::string& id, const Before& before, const std::function<void()>& save);

  COM_ProjectData& project;
  Drawing& drawing;
  const GbxmlDocument& document;
  Tally& tally;
  KnownIds& ids;

 private:
  std::unordered_set<std::string>& names_of(StoredEntity& entity);
  void become_default(StoredEntity& entity);

  // By index table:
  std::map<std::string_view, std::unordered_set<std::string>> names_;
  std::map<std::string_view, std::vector<std::byte>> defaults_;  // of kinds with records
};

}  // namespace tarn
