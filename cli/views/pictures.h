// How entities look on a terminal. Most are forms, driven by their members tables; some have a picture of their own.
#pragma once

#include "cli/command.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

/// Prints the entity: its picture, where its class has one, else a form of its fields and parts. References come with
/// the names of what they refer to.
void show_entity(Database& database, StoredEntity& entity);

/// A building by what it uses and pays, a chiller with its maps, a plant by what it uses.
void show_building(Database& database, StoredEntity& entity);
void show_chiller(Database& database, StoredEntity& entity);
void show_plant(Database& database, StoredEntity& entity);

}  // namespace tarn::cli
