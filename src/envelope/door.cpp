#include "tarn/door.h"

#include "storage/kind.h"

namespace tarn {

const Kind& DOR_Door::kind() const {
  static const Kind kind{.class_name = "DOR_Door",
                         .index_table = "DoorIndex",
                         .default_word = "Door",
                         .missing_row_message = "Invalid door ID: ",
                         .columns = {summary<DOR_Door, &DoorRecord::GrossArea>("fArea"),
                                     summary<DOR_Door, &DoorRecord::SolidUValue>("fSolidUValue"),
                                     summary<DOR_Door, &DoorRecord::GlassUValue>("fGlassUValue")},
                         .reach = Reach::through_spaces("Space_Door_Links", "Door_ID")};
  return kind;
}

const ClassInfo& DOR_Door::info() const {
  using R = DoorRecord;
  using C = DOR_Door;
  static constexpr auto members = describe<C>(
      Failures::Trapped, property<&C::m_bCloning>, method<&C::Reset>("bResetAll").by_reference(),
      method<&C::Clone>("nIndex"), method<&C::GetFreeIndex>, method<&C::Delete>("nRecNum").by_reference(),
      property<&R::GlassArea>("ft2").by_reference(), property<&R::GlassShadeCo>.by_reference(),
      property<&R::GlassShaded>.by_reference(), property<&R::GlassUValue>("Btu/(hr.ft2.F)").by_reference(),
      property<&R::GrossArea>("ft2").by_reference(), property<&R::AreaSpec>, property<&R::Height>("ft"),
      property<&R::Width>("ft"), method<&C::GetDBHandle>, method<&C::SetDBHandle>("DB"),
      property<&C::Index>.read_only(), method<&C::Load>("nRecNum"), property<&C::FileName>, method<&C::Save>,
      method<&C::CreateDefault>, property<&R::Name>, property<&R::SolidUValue>("Btu/(hr.ft2.F)").by_reference(),
      method<&C::CopyInstance>, event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

bool DOR_Door::Delete(std::optional<int16_t> nRecNum) {
  StoredEntity::Delete(nRecNum);
  return true;
}

}  // namespace tarn
