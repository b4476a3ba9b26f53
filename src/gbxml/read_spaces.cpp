// Spaces as the file names them; their numbers are read when they are filled (space_loads.cpp).
#include "gbxml/drawing.h"

namespace tarn {

void read_spaces(Drawing& drawing) {
  for (const Element element : drawing.document.all("Space")) {
    drawing.tally.found("Space");
    DrawnSpace space;
    space.element = element;
    space.id = attribute(element, "id");
    if (space.id.empty()) drawing.document.refuse(element, "it has no id");
    space.name = child_text(element, "Name");
    space.zone = attribute(element, "zoneIdRef");
    const std::string_view condition = attribute(element, "conditionType");
    space.conditioned = condition != "Unconditioned" && condition != "Vented" && condition != "NaturallyVentedOnly";
    if (!drawing.space_of_id.emplace(space.id, drawing.spaces.size()).second)
      drawing.document.refuse(element, "another space has the same id");
    drawing.spaces.push_back(std::move(space));
  }
}

}  // namespace tarn
