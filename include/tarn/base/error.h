// Errors as C++ callers see them: a number, the member that failed, a description a person can act on.
// The numbers are the classic run-time and database engine numbers, so that scripts can test for them.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tarn {

/// Numbers of the errors that this layer raises itself.
enum class ErrorNumber : int {
  InvalidCall = 5,
  Overflow = 6,
  SubscriptOutOfRange = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  BadFileHandle = 52,
  FileNotFound = 53,
  FileAlreadyOpen = 55,
  DeviceError = 57,
  InputPastEnd = 62,
  BadPosition = 63,
  TooManyFiles = 67,
  PermissionDenied = 70,
  PathNotFound = 76,
  ObjectNotSet = 91,
  CannotCreateObject = 429,
  NoSuchMember = 438,
  WrongArgumentCount = 450,
  EditNotStarted = 3020,
  NoCurrentRecord = 3021,
  NoTransaction = 3034,
  StatementRejected = 3075,
  DatabaseNotFound = 3024,
  DatabaseLocked = 3260,
  DatabaseReadOnly = 3027,
  RecordDeleted = 3167,
  FileExists = 3204,
  ItemNotFound = 3265,
  UnknownFormat = 3343,
  DatabaseFailure = 3000,
  RateTypeUndefined = 3001,
  RateTypeClosed = 3002,
  RateStyleInvalid = 3003,
};

/// A text as messages show it: of a very long one, which may come from a damaged file, the beginning and the end.
std::string shortened(const std::string& text);

class Error : public std::runtime_error {
 public:
  Error(ErrorNumber number, const std::string& description) : Error(static_cast<int>(number), {}, description) {}
  Error(int number, std::string source, const std::string& description)
      : std::runtime_error(shortened(description)), number_(number), source_(std::move(source)) {}

  int number() const { return number_; }
  /// Class and procedure label, "BLR_Boiler.Load()"; empty where no member was called by name.
  const std::string& source() const { return source_; }
  std::string description() const { return what(); }
  void set_source(std::string source) { source_ = std::move(source); }

 private:
  int number_;
  std::string source_;
};

[[noreturn]] void fail(ErrorNumber number, const std::string& description);

}  // namespace tarn
