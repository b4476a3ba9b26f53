#include "check/other_index.h"

#include "check/inspection.h"

namespace tarn {

void fill_index(COM_ProjectData& project, const Ptr<Database>& database) {
  Inspection on(project, database);
  for (InspectedKind& kind : on.kinds) restore_rows(on, kind);
  for (InspectedKind& kind : on.kinds) {
    if (kind.kind().link_owner.empty()) continue;
    const auto used = kinds_referred_to(kind.entity->info(), [](std::string_view) { return true; });
    auto rows = database->OpenRecordset("SELECT nIndex FROM " + kind.table() + " ORDER BY nIndex");
    for (; !rows.AtEof(); rows.MoveNext()) {
      const auto index = static_cast<int16_t>(rows.Fields("nIndex").integer());
      kind.entity->read_stored(index);
      LinkRows links(*database, kind.kind().link_owner, index);
      write_links(*kind.entity, links, used);
    }
  }
}

Settled settle_by_records(COM_ProjectData& project, const Ptr<Database>& database) {
  Settled report;
  {
    Inspection on(project, database);
    inspect(on);
    for (const Damage& damage : on.damages) {
      if (!damage.by_record) continue;
      damage.mend();
      report.settled.push_back(damage.told);
    }
  }
  Inspection after(project, database);
  inspect(after);
  for (Damage& damage : after.damages) report.left.push_back(std::move(damage.told));
  return report;
}

}  // namespace tarn
