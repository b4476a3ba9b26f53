// A script of calls of the C interface, with objects that are released, numbers out of range, texts of any bytes, and
// calls from inside callbacks: each call has a status, and nothing else comes of it.
#include <iterator>

#include "c_project_calls.h"
#include "client_files.h"
#include "scratch.h"

namespace tarn::fuzz {
namespace {

const Scratch& scratch() {
  static Scratch sample(make_project);
  return sample;
}

class Script final : public ProjectCalls {
 public:
  using ProjectCalls::ProjectCalls;

  void run() {
    constexpr int kMostCalls = 100;
    if (const uint8_t files = input_.byte(); files > 0) {
      client_files_.fill(scratch());
      client_files_.calls_left = files == 1 ? SIZE_MAX : files;
      require(tarn_set_files(&client_files_.services) == TARN_OK, "the file service is refused");
    }
    tarn_set_log(
        [](void*, const char* text, const char* component, const char* name, const char* procedure,
           const char* detail) {
          for (const char* each : {text, component, name, procedure, detail}) read_through(each);
        },
        nullptr);
    open_project(scratch().folder(), "JOB");
    for (int call = 0; call < kMostCalls && !input_.empty(); ++call) one_call();
    while (!objects_.empty()) {
      tarn_release(objects_.back());
      objects_.pop_back();
    }
    while (tarn_rollback() == TARN_OK) {
    }
  }

 private:
  void get() {
    tarn_object* on = object();
    const int32_t member = member_of(on);
    const auto at = subscripts();
    tarn_value out{};
    keep(tarn_get(on, member, at.data(), static_cast<int32_t>(at.size()), &out), out);
  }
  void let() {
    tarn_object* on = object();
    const int32_t member = member_of(on);
    const auto at = subscripts();
    const tarn_value given = value();
    tarn_let(on, member, at.data(), static_cast<int32_t>(at.size()), &given);
    tarn_let_allowed(on, member, at.data(), static_cast<int32_t>(at.size()), &given);
  }
  void call() {
    tarn_object* on = object();
    const int32_t member = member_of(on);
    auto arguments = values();
    tarn_value result{};
    keep(tarn_call(on, member, arguments.data(), static_cast<int32_t>(arguments.size()), &result), result);
    for (const tarn_value& each : arguments) {
      if (each.type == TARN_TEXT) read_through(each);
    }
  }
  void by_name() {
    tarn_object* on = object();
    const char* member = name();
    const auto at = subscripts();
    const auto count = static_cast<int32_t>(at.size());
    auto arguments = values();
    tarn_value out{};
    tarn_member_number(on, member);
    switch (input_.byte() % 3) {
      case 0:
        keep(tarn_get_by_name(on, member, at.data(), count, &out), out);
        break;
      case 1:
        tarn_let_by_name(on, member, at.data(), count, arguments.empty() ? nullptr : arguments.data());
        break;
      default:
        keep(tarn_call_by_name(on, member, arguments.data(), static_cast<int32_t>(arguments.size()), &out), out);
    }
  }
  /// In memory of exactly the size that the call is told.
  void block() {
    tarn_object* on = object();
    const int32_t member = member_of(on);
    tarn_member told{};
    size_t elements = 1;
    if (const char* class_name = tarn_class_of(on); tarn_describe(class_name, member, &told) == TARN_OK) {
      for (int32_t i = 0; i < told.bound_count; ++i) {
        tarn_bounds bounds{};
        require(tarn_describe_bounds(class_name, member, i, &bounds) == TARN_OK, "a dimension has no bounds");
        elements *= static_cast<size_t>(bounds.last - bounds.first + 1);
      }
    }
    constexpr size_t kWidths[]{2, 4, 8, 1};
    const uint8_t how = input_.byte();
    std::vector<char> bytes(how < 200 ? elements * kWidths[how % 4] : how - 200);
    tarn_get_block(on, member, bytes.data(), bytes.size());
    const std::string given = input_.text(16);
    std::copy_n(given.data(), std::min(given.size(), bytes.size()), bytes.data());
    tarn_let_block(on, member, bytes.data(), bytes.size());
    tarn_let_block_allowed(on, member, bytes.data(), bytes.size());
  }
  void describe() {
    const char* class_name = input_.byte() % 2 == 0 ? name() : tarn_class_name(input_.number<int16_t>());
    const auto member = input_.number<int16_t>();
    const auto part = static_cast<int8_t>(input_.byte());
    tarn_member told{};
    if (tarn_describe(class_name, member, &told) == TARN_OK) {
      for (const char* each : {told.name, told.unit, told.enumeration}) read_through(each);
    }
    tarn_bounds bounds{};
    tarn_describe_bounds(class_name, member, part, &bounds);
    tarn_parameter parameter{};
    if (tarn_describe_parameter(class_name, member, part, &parameter) == TARN_OK) read_through(parameter.name);
    const char* enumeration = input_.byte() % 2 == 0 ? name() : tarn_enumeration_name(input_.number<int16_t>());
    tarn_code_count(enumeration);
    tarn_code code{};
    if (tarn_describe_code(enumeration, member, &code) == TARN_OK) read_through(code.text);
  }
  int32_t called_back(tarn_value* arguments, int32_t count) override {
    const uint8_t how = input_.byte();
    if (how == 0 || depth_ > 2) return 0;
    if (how == 1) return 1;
    if (how == 2 && count > 0 && arguments) arguments[0] = value();
    ++depth_;
    if (how > 2) one_call();
    --depth_;
    return 0;
  }
  void listen() {
    tarn_object* on = object();
    const int32_t member = member_of(on);
    const tarn_listener listener = [](void* script, tarn_value* arguments, int32_t count) {
      return static_cast<Script*>(script)->called_back(arguments, count);
    };
    tarn_listen(on, member, input_.byte() % 4 == 0 ? nullptr : listener, this);
  }
  void database() {
    const char* path = name();
    if (input_.byte() % 2 == 0) tarn_create_index(path);
    tarn_object* made = nullptr;
    const tarn_status status = tarn_open_database(path, &made);
    keep(status, made);
  }
  void statement() {
    tarn_object* on = object();
    const std::string sql = text(input_.byte());
    const auto parameters = values();
    const auto count = static_cast<int32_t>(parameters.size());
    int32_t changed = 0;
    if (input_.byte() % 2 == 0) {
      tarn_execute(on, sql.c_str(), parameters.data(), count, &changed);
      return;
    }
    rows_left_ = 100;
    tarn_query(
        on, sql.c_str(), parameters.data(), count,
        [](void* script, const char* const* names, const tarn_value* cells, int32_t columns) {
          auto& self = *static_cast<Script*>(script);
          if (--self.rows_left_ < 0) return;
          for (int32_t i = 0; i < columns; ++i) {
            read_through(names[i]);
            if (cells[i].type == TARN_TEXT) read_through(cells[i]);
          }
          self.called_back(nullptr, 0);
        },
        this);
  }
  void file() {
    int16_t number = input_.number<int16_t>();
    switch (input_.byte() % 4) {
      case 0:
        tarn_open_file(name(), input_.byte() % 2, &number);
        break;
      case 1:
        tarn_close_file(number);
        break;
      case 2:
        tarn_drop_file(number);
        break;
      default: {
        int32_t position = 0;
        tarn_file_position(number, &position);
      }
    }
  }
  void transaction() {
    switch (input_.byte() % 4) {
      case 0:
      case 1:
        tarn_begin();
        break;
      case 2:
        tarn_commit();
        break;
      default:
        tarn_rollback();
    }
  }
  void error() {
    const char *source = nullptr, *description = nullptr;
    if (tarn_last_error(object(), &source, &description) != 0) read_through(description);
    read_through(source);
  }
  void host() {
    if (input_.byte() % 2 == 0) {
      tarn_set_host(nullptr);
      tarn_set_yield(nullptr, nullptr);
      return;
    }
    tarn_host services{};
    services.context = this;
    services.copy_name = [](void* script, const char*) { return static_cast<Script*>(script)->name(); };
    services.database = [](void* script, const char*) { return static_cast<Script*>(script)->object(); };
    tarn_set_host(&services);
    tarn_set_yield([](void*) {}, nullptr);
  }
  void make() {
    tarn_object* made = nullptr;
    const char* class_name =
        input_.byte() % 4 == 0 ? name() : tarn_class_name(input_.byte() % (tarn_class_count() + 1));
    const tarn_status status = tarn_create(class_name, &made);
    keep(status, made);
  }
  void release() {
    if (tarn_object* gone = object(); tarn_release(gone) == TARN_OK)
      require(tarn_release(gone) == TARN_BAD_HANDLE, "a handle was released twice");
  }

  void others() {
    read_through(tarn_shipped_file(name()));
    tarn_settle();
    tarn_settle_database(object());
    read_through(tarn_enumeration_name(input_.byte() % (tarn_enumeration_count() + 1)));
  }

  void one_call() {
    using Call = void (Script::*)();
    constexpr Call kCalls[]{&Script::get,       &Script::let,          &Script::call,     &Script::by_name,
                            &Script::block,     &Script::describe,     &Script::listen,   &Script::database,
                            &Script::statement, &Script::file,         &Script::check,    &Script::transaction,
                            &Script::error,     &Script::chiller,      &Script::host,     &Script::make,
                            &Script::release,   &Script::others,       &Script::entity,   &Script::uses,
                            &Script::kinds,     &Script::records,      &Script::exchange, &Script::gbxml,
                            &Script::results,   &Script::other_project};
    (this->*kCalls[input_.byte() % std::size(kCalls)])();
  }

  int depth_ = 0, rows_left_ = 0;
  ClientFiles client_files_;
};

}  // namespace
}  // namespace tarn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tarn::fuzz;
  scratch().run([=] { Script(Input(data, size)).run(); });
  return 0;
}
