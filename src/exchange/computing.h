// What follows from the inputs of an entity that a person edits.
#pragma once

#include "project/kinds.h"
#include "tarn/storage/entity.h"

namespace tarn {

/// What the kind computes, and the names beside codes: those of a window's gap become those of its GapTypeID where they
/// are the catalogue's for another code. Names of one's own stay.
void compute_inputs(StoredEntity& entity, const EntityKind& kind);

}  // namespace tarn
