// A script of calls of the C interface, with objects that are released, numbers out of range, texts of any bytes, and
// calls from inside callbacks: each call has a status, and nothing else comes of it.
#include <iterator>
#include <list>
#include <utility>
#include <vector>

#include "client_files.h"
#include "finding.h"
#include "input.h"
#include "scratch.h"
#include "tarn/tarn.h"

namespace tarn::fuzz {
namespace {

const Scratch& scratch() {
  static Scratch sample(make_project);
  return sample;
}

/// What a call is given and hands out; read to the end, so that a text without an end is found.
size_t read_through(const char* text) { return text ? std::char_traits<char>::length(text) : 0; }

class Script {
 public:
  explicit Script(Input input) : input_(input) {}

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
    open_project();
    for (int call = 0; call < kMostCalls && !input_.empty(); ++call) one_call();
    while (!objects_.empty()) {
      tarn_release(objects_.back());
      objects_.pop_back();
    }
    while (tarn_rollback() == TARN_OK) {
    }
  }

 private:
  void open_project() {
    tarn_object* project = nullptr;
    require(tarn_create("COM_ProjectData", &project) == TARN_OK, "there is no project class");
    const std::string folder = scratch().folder();
    tarn_value value{TARN_TEXT, static_cast<int32_t>(folder.size()), {}};
    value.as.text = folder.c_str();
    tarn_let_by_name(project, "WorkPath", nullptr, 0, &value);
    value.length = 3;
    value.as.text = "JOB";
    tarn_let_by_name(project, "FilePrefix", nullptr, 0, &value);
    objects_.push_back(project);
  }

  /// Without the parts of a path: nothing here may name a file outside of the project's folder.
  std::string text(size_t length) {
    std::string text = input_.text(length);
    for (size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '/' || (text[i] == '.' && i > 0 && text[i - 1] == '.')) text[i] = '_';
    }
    return text;
  }
  /// Ended by a NUL; sometimes none at all.
  const char* name() {
    const uint8_t length = input_.byte();
    if (length == 255) return nullptr;
    return texts_.emplace_back(text(length)).c_str();
  }
  /// Mostly one that was handed out, released or not.
  tarn_object* object() {
    const uint8_t which = input_.byte();
    if (which == 254 && !objects_.empty()) return objects_.back();
    if (which == 255) return reinterpret_cast<tarn_object*>(input_.number<uint64_t>());
    return objects_.empty() ? nullptr : objects_[which % objects_.size()];
  }
  void keep(tarn_status status, tarn_object* made) {
    if (status == TARN_OK && made) objects_.push_back(made);
  }
  void keep(tarn_status status, const tarn_value& result) {
    if (status != TARN_OK) return;
    if (result.type == TARN_OBJECT) keep(status, result.as.object);
    if (result.type == TARN_TEXT)
      require(read_through(result.as.text) <= static_cast<size_t>(result.length), "a text has no end");
    if (result.type == TARN_REALS) {
      volatile double sum = 0;
      for (int32_t i = 0; i < result.length; ++i) sum = sum + result.as.reals[i];
    }
  }
  /// Mostly one that the object has.
  int32_t member_of(tarn_object* object) {
    const auto number = input_.number<int16_t>();
    const char* name = tarn_class_of(object);
    const int32_t count = name ? tarn_member_count(name) : 0;
    return count > 0 && number >= 0 ? number % (count + 1) : number;
  }
  /// As many as the member has, or another number of them; null where there are none.
  std::vector<int32_t> subscripts() {
    std::vector<int32_t> all(input_.byte() % 5);
    for (int32_t& each : all) {
      each = static_cast<int8_t>(input_.byte());
      if (each == -128) each = input_.number<int32_t>();
    }
    return all;
  }
  tarn_value value() {
    constexpr int32_t kTypes = TARN_ANY + 2;
    tarn_value out{input_.byte() % kTypes, 0, {}};
    switch (out.type) {
      case TARN_BOOLEAN:
        out.as.boolean = input_.byte();
        break;
      case TARN_INT16:
        out.as.i2 = input_.number<int16_t>();
        break;
      case TARN_INT32:
        out.as.i4 = input_.number<int32_t>();
        break;
      case TARN_REAL32:
        out.as.r4 = input_.number<float>();
        break;
      case TARN_REAL64:
        out.as.r8 = input_.number<double>();
        break;
      case TARN_TEXT: {  // as long as it says, without a NUL after it
        const std::string given = text(input_.byte());
        const auto& bytes = text_bytes_.emplace_back(given.begin(), given.end());
        out.length = static_cast<int32_t>(bytes.size());
        out.as.text = bytes.empty() ? "" : bytes.data();
        break;
      }
      case TARN_REALS: {
        auto& reals = reals_.emplace_back(input_.byte());
        for (double& each : reals) each = input_.number<float>();
        out.length = static_cast<int32_t>(reals.size());
        out.as.reals = reals.data();
        break;
      }
      case TARN_OBJECT:
        out.as.object = object();
        break;
      default:
        break;
    }
    return out;
  }
  std::vector<tarn_value> values() {
    std::vector<tarn_value> all(input_.byte() % 8);
    for (tarn_value& each : all) each = value();
    return all;
  }

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
  }
  void call() {
    tarn_object* on = object();
    const int32_t member = member_of(on);
    auto arguments = values();
    tarn_value result{};
    keep(tarn_call(on, member, arguments.data(), static_cast<int32_t>(arguments.size()), &result), result);
    for (const tarn_value& each : arguments) {
      if (each.type == TARN_TEXT) text_of_argument(each);
    }
  }
  static void text_of_argument(const tarn_value& argument) {
    volatile char last = 0;
    for (int32_t i = 0; i < argument.length; ++i) last = argument.as.text[i];
    static_cast<void>(last);
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
  /// What a callback does: fails, changes what it is given, or calls on.
  int32_t called_back(tarn_value* arguments, int32_t count) {
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
            if (cells[i].type == TARN_TEXT) text_of_argument(cells[i]);
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
  /// Once: it takes longer than all the rest.
  void check() {
    if (std::exchange(checked_, true)) return;
    const char* text = nullptr;
    tarn_object* on = object();
    const uint8_t how = input_.byte();
    const tarn_status status =
        how % 2 == 0 ? tarn_check(on, &text) : tarn_repair(on, how % 4 == 1, how % 8 == 3, &text);
    if (status == TARN_OK) read_through(text);
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
  void import() {
    tarn_object* on = object();
    const char* notes = nullptr;
    if (tarn_import_chiller(on, name(), &notes) == TARN_OK) read_through(notes);
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

  /// What takes a project as a whole, by any object.
  void whole_project() {
    tarn_object *on = object(), *made = nullptr;
    const char *text = nullptr, *group = input_.byte() % 4 == 0 ? name() : "windows";
    std::vector<char> records(input_.byte() * size_t{555});
    int32_t number = 0;
    tarn_set_strict(input_.byte() % 2);
    tarn_read_records(on, group, input_.byte() - 1, static_cast<int32_t>(records.size() / 555), records.data(),
                      records.size(), &number);
    keep(tarn_new_entity(on, group, input_.byte() % 2 == 0 ? nullptr : name(), &made), made);
    tarn_compute(on);
    tarn_create_project(on);
    if (tarn_describe_entity(on, &number, &text) == TARN_OK) read_through(text);
    if (tarn_picture(on, &text) == TARN_OK) read_through(text);
    tarn_import(on, name(), nullptr, nullptr, &number);
    if (tarn_export(on, group, nullptr, nullptr, &text) == TARN_OK) read_through(text);
    tarn_import_gbxml(on, "none", nullptr, nullptr, &text);
    if (tarn_export_gbxml(on, nullptr, nullptr, &text, nullptr) == TARN_OK) read_through(text);
    tarn_import_weather(on, name(), object(), &text);
  }

  void others() {
    whole_project();
    read_through(tarn_shipped_file(name()));
    tarn_settle();
    tarn_settle_database(object());
    read_through(tarn_enumeration_name(input_.byte() % (tarn_enumeration_count() + 1)));
  }

  void one_call() {
    using Call = void (Script::*)();
    constexpr Call kCalls[]{&Script::get,       &Script::let,      &Script::call,   &Script::by_name,
                            &Script::block,     &Script::describe, &Script::listen, &Script::database,
                            &Script::statement, &Script::file,     &Script::check,  &Script::transaction,
                            &Script::error,     &Script::import,   &Script::host,   &Script::make,
                            &Script::release,   &Script::others};
    (this->*kCalls[input_.byte() % std::size(kCalls)])();
  }

  Input input_;
  int depth_ = 0, rows_left_ = 0;
  bool checked_ = false;
  std::vector<tarn_object*> objects_;
  // What was given in a call, kept: a call may come back to the script before it has read its arguments.
  std::list<std::string> texts_;
  std::list<std::vector<char>> text_bytes_;
  std::list<std::vector<double>> reals_;
  ClientFiles client_files_;
};

}  // namespace
}  // namespace tarn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tarn::fuzz;
  scratch().run([=] { Script(Input(data, size)).run(); });
  return 0;
}
