#include "tarn/shade.h"

#include "storage/kind.h"

namespace tarn {

const Kind& SHD_Shade::kind() const {
  static const Kind kind{.class_name = "SHD_Shade",
                         .index_table = "ShadeIndex",
                         .default_word = "Shade",
                         .missing_row_message = "Invalid shade ID number: ",
                         .columns = {},
                         .reach = Reach::through_spaces("Space_Shade_Links", "Shade_ID")};
  return kind;
}

const ClassInfo& SHD_Shade::info() const {
  using R = ShadeRecord;
  using C = SHD_Shade;
  static constexpr auto members = describe<C>(
      Failures::Trapped, property<&C::m_bCloning>, method<&C::Reset>("bResetAll").by_reference(),
      method<&C::CopyInstance>, method<&C::Clone>("nIndex"), method<&C::GetFreeIndex>,
      method<&C::Delete>("nRecNum").by_reference(), method<&C::GetDBHandle>, method<&C::SetDBHandle>("DB"),
      property<&C::Index>.read_only(), method<&C::Load>("nRecNum"), property<&C::FileName>, method<&C::Save>,
      method<&C::CreateDefault>, property<&R::Name>, property<&R::RevealDepth>("ft").by_reference(),
      property<&R::OvhgExt>("ft").by_reference(), property<&R::OvhgHeight>("ft").by_reference(),
      property<&R::OvhgRHExt>("ft").by_reference(), property<&R::OvhgLHExt>("ft").by_reference(),
      property<&R::RHFinSep>("ft").by_reference(), property<&R::RHFinExt>("ft").by_reference(),
      property<&R::RHFinHeight>("ft").by_reference(), property<&R::LHFinSep>("ft").by_reference(),
      property<&R::LHFinExt>("ft").by_reference(), property<&R::LHFinHeight>("ft").by_reference(),
      method<&C::IsNameUnique>("sName"), event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
