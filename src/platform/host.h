// The services that the host program gives to the data layer, each replaceable by the client, each with a default. Each
// thread has its own set. The diagnostic log (`base/log.h`) is a service too.
#pragma once

#include <functional>
#include <string>

#include "platform/files.h"
#include "tarn/base/object.h"

namespace tarn {

class Database;

struct Host {
  /// A working path in its normal form: absolute, no dots, no doubled separators. Empty stays empty.
  std::function<std::string(const std::string&)> normalise_path;
  /// A working path in directory form: ends in exactly one separator. Empty stays empty.
  std::function<std::string(const std::string&)> directory_form;
  /// The open handle of the database in a file, opened on first demand and shared after.
  std::function<Ptr<Database>(const std::string&)> database;
  /// The name of a copy, made from the name of its original (no blanks at the ends).
  std::function<std::string(const std::string&)> copy_name;
  /// The time, UTC: "2026-11-22 13:30:05".
  std::function<std::string()> now;
  FileService* files = &system_files();
  /// Called by long calculations where a user interface may handle what waits for it.
  std::function<void()> yield = [] {};
};

/// The product's own services.
Host standard_host();
/// This thread's services.
Host& host();

}  // namespace tarn
