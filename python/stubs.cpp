// Writes what type checkers and editors know of the package: `tarn_stubs FOLDER` makes _tarn.pyi, _enumerations.pyi and
// _kinds.pyi from the members tables.

#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "extension/names.h"
#include "tarn/tarn.h"

namespace {

using tarn::python::snake_case;

constexpr std::string_view kTypeNames[]{"", "Boolean", "I2", "I4", "R4", "R8", "text", "object", "reals", "any"};

std::string python_type(int32_t type, const char* object_class) {
  constexpr std::string_view types[]{"None", "bool", "int", "int", "float", "float", "str", "", "list[float]", "Any"};
  if (type != TARN_OBJECT) return std::string(types[type]);
  return *object_class ? object_class : "Any";
}
std::string argument_type(int32_t type) {
  if (type == TARN_REALS) return "Sequence[float]";
  if (type == TARN_TEXT) return "str | PathLike[str]";
  return type == TARN_OBJECT || type == TARN_ANY ? "Any" : python_type(type, "");
}

/// The members of a class, with what belongs to them.
struct Member : tarn_member {
  std::vector<tarn_bounds> bounds;
  std::vector<tarn_parameter> parameters;
};

Member member_of(const char* class_name, int32_t number) {
  Member member{};
  tarn_describe(class_name, number, &member);
  member.bounds.resize(static_cast<size_t>(member.bound_count));
  for (int32_t i = 0; i < member.bound_count; ++i)
    tarn_describe_bounds(class_name, number, i, &member.bounds[static_cast<size_t>(i)]);
  member.parameters.resize(static_cast<size_t>(member.parameter_count));
  for (int32_t i = 0; i < member.parameter_count; ++i)
    tarn_describe_parameter(class_name, number, i, &member.parameters[static_cast<size_t>(i)]);
  return member;
}

std::string codes_of(const char* enumeration) {
  std::string codes;
  for (int32_t i = 0; i < tarn_code_count(enumeration); ++i) {
    tarn_code code{};
    tarn_describe_code(enumeration, i, &code);
    codes += (i == 0 ? "" : ", ") + std::to_string(code.value) + " " + (*code.text ? code.text : code.name);
  }
  return codes;
}

/// As the text of a Python string in three quotes.
std::string quoted(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '\\' || c == '"') out += '\\';
    out += c;
  }
  return out;
}

/// Type, unit, bounds and codes.
std::string documentation(const Member& member) {
  std::string text(kTypeNames[member.type]);
  if (*member.unit) text += ", " + std::string(member.unit);
  for (size_t i = 0; i < member.bounds.size(); ++i) {
    text += (i == 0 ? "; subscripts " : ", ") + std::to_string(member.bounds[i].first) + " to " +
            std::to_string(member.bounds[i].last);
  }
  if (member.text_width > 0) text += "; at most " + std::to_string(member.text_width) + " characters";
  if (*member.enumeration)
    text += "; codes of " + std::string(member.enumeration) + ": " + codes_of(member.enumeration);
  return quoted(text + ".");
}

void write_property(std::ostream& out, const Member& member, const std::string& name, const std::string& doc) {
  const std::string type = python_type(member.type, member.object_class);
  if (member.bounds.empty() && member.read_only != 0) {
    out << "    @property\n    def " << name << "(self) -> " << type << ":" << (doc.empty() ? " ..." : "") << "\n";
    if (!doc.empty()) out << "        \"\"\"" << doc << "\"\"\"\n";
    return;
  }
  out << "    " << name << ": " << (member.bounds.empty() ? type : "ArrayProperty[" + type + "]") << "\n";
  if (!doc.empty()) out << "    \"\"\"" << doc << "\"\"\"\n";
}

std::string result_of(const Member& member) {
  std::vector<std::string> parts;
  if (member.type != TARN_EMPTY) parts.push_back(python_type(member.type, member.object_class));
  for (const tarn_parameter& p : member.parameters) {
    if (p.in_out != 0) parts.push_back(python_type(p.type, ""));
  }
  if (parts.empty()) return "None";
  if (parts.size() == 1) return parts.front();
  std::string all;
  for (const std::string& part : parts) all += (all.empty() ? "" : ", ") + part;
  return "tuple[" + all + "]";
}

bool may_be_left_out(const tarn_parameter& p) { return p.optional != 0 || p.in_out != 0; }

void write_method(std::ostream& out, const Member& member) {
  const bool of_sections = !member.parameters.empty() && member.parameters.front().sections != 0;
  std::string all = "self", needed = "self";  // without the sections
  for (const tarn_parameter& p : member.parameters) {
    const std::string parameter = ", " + std::string(p.name) + ": " + argument_type(p.type);
    all += parameter + (p.optional != 0 ? " | None" : "") + (may_be_left_out(p) ? " = ..." : "");
    if (p.sections == 0 && !may_be_left_out(p)) needed += parameter;
  }
  if (of_sections)
    out << "    @overload\n    def " << member.name << "(" << needed << ") -> None: ...\n    @overload\n";
  out << "    def " << member.name << "(" << all << ") -> " << result_of(member) << ": ...\n";
}

void write_member(std::ostream& out, const Member& member) {
  const std::string snake = snake_case(member.name);
  const bool twice = snake != member.name;
  if (member.kind == TARN_METHOD) {
    write_method(out, member);
    if (twice) out << "    " << snake << " = " << member.name << "\n";
  } else if (member.kind == TARN_EVENT) {
    for (const std::string& name : {std::string(member.name), snake})
      out << "    " << name << ": Callable[[" << python_type(member.parameters[0].type, "") << "], object] | None\n";
  } else {
    write_property(out, member, member.name, documentation(member));
    if (twice) write_property(out, member, snake, "");
  }
}

constexpr std::string_view kHead = R"(from os import PathLike
from typing import Any, Callable, Generic, Iterator, Sequence, TypeVar, overload

T = TypeVar("T")
Path = str | PathLike[str]
Progress = Callable[[int, int], object] | None
__version__: str

class Array(Generic[T]):
    """An indexed property: [1], [1, 24], and [:] for all of it as a nested list, the first subscript outermost."""
    @overload
    def __getitem__(self, at: int | tuple[int, ...]) -> T: ...
    @overload
    def __getitem__(self, at: slice) -> list[Any]: ...
    @overload
    def __setitem__(self, at: int | tuple[int, ...], value: T) -> None: ...
    @overload
    def __setitem__(self, at: slice, value: Any) -> None: ...
    def __len__(self) -> int: ...
    def __iter__(self) -> Iterator[Any]: ...
    def __array__(self, dtype: Any = ...) -> Any: ...
    def tolist(self) -> list[Any]: ...
    _place: tuple[str, int]
    def _block(self) -> bytes | None: ...

class ArrayProperty(Generic[T]):
    def __get__(self, object: Any, owner: Any = ...) -> Array[T]: ...
    def __set__(self, object: Any, values: Any) -> None: ...

class Object:
    """An object of the component. Names of members are found without regard to case."""
    @property
    def _daily(self) -> bool: ...
    def _repr_html_(self) -> str: ...
    def __copy__(self) -> Any: ...

class ListObject(Object):
    """What has Count and Item: list(...), len(...) and `in` work too."""
    def __len__(self) -> int: ...
    def __iter__(self) -> Iterator[Any]: ...
    def tolist(self) -> list[Any]: ...

class Database(Object):
    """The shared handle of an open index database."""
    def execute(self, sql: str, *parameters: Any) -> int: ...
    def rows(self, sql: str, *parameters: Any) -> list[dict[str, Any]]: ...

def create_index(path: Path) -> None: ...
def open_database(path: Path) -> Database: ...
def shipped_file(name: str) -> str: ...
def settle() -> None: ...
def settle_database(database: Database) -> None: ...
def begin() -> None: ...
def commit() -> None: ...
def rollback() -> None: ...
def open_file(path: Path, write: bool) -> int: ...
def close_file(number: int) -> None: ...
def drop_file(number: int) -> None: ...
def file_position(number: int) -> int: ...
def set_log(handler: Callable[[str, str, str | None, str | None, str | None], object]) -> None: ...
def set_yield(handler: Callable[[], object]) -> None: ...
def set_strict(on: bool) -> bool: ...
def daily(object: T) -> T: ...
def classes() -> list[str]: ...
def describe(class_name: str) -> list[tuple[Any, ...]]: ...
def enumerations() -> list[tuple[str, list[tuple[str, int, str]]]]: ...
def kinds() -> list[tuple[Any, ...]]: ...
def create_project(project: Object) -> None: ...
def copy_project(project: Object, to: Object) -> None: ...
def copy_entity(project: Object, group: str, index: int, to: Object) -> str: ...
def check(project: Object) -> str: ...
def uses(project: Object, kind: str, index: int) -> str: ...
def used_by(project: Object, kind: str, index: int) -> str: ...
def stale(project: Object) -> str: ...
def graph(project: Object) -> str: ...
def compare(project: Object, other: Object | str, tolerance: float) -> str: ...
def repair(project: Object, dry_run: bool, rebuild_index: bool) -> str: ...
def new_entity(project: Object, group: str, type: str | None) -> Any: ...
def compute(entity: Object) -> None: ...
def describe_entity(entity: Object) -> tuple[int, str]: ...
def export_project(project: Object, groups: str | None, progress: Progress) -> str: ...
def import_project(project: Object, text: str, progress: Progress) -> int: ...
def import_gbxml(project: Object, path: Path, progress: Progress) -> str: ...
def export_gbxml(project: Object, progress: Progress) -> tuple[str, str]: ...
def report(project: Object, units: str, progress: Progress) -> str: ...
def import_weather(year: Object, path: Path, project: Object | None) -> str: ...
def import_chiller(chiller: Object, path: Path) -> str: ...
def picture(object: Object) -> str: ...
def read_rows(project: Object, group: str, indexes: list[int]) -> bytearray: ...
)";

void write_class(std::ostream& out, const char* name) {
  const int32_t count = tarn_member_count(name);
  std::vector<Member> members;
  bool counts = false, lists = false;
  for (int32_t i = 0; i < count; ++i) {
    members.push_back(member_of(name, i));
    counts = counts || std::string_view(members.back().name) == "Count";
    lists = lists || std::string_view(members.back().name) == "Item";
  }
  out << "\nclass " << name << (counts && lists ? "(ListObject):\n" : "(Object):\n");
  if (members.empty()) out << "    ...\n";
  for (const Member& member : members) write_member(out, member);
}

void write_classes(std::ostream& out) {
  out << kHead << "\n__all__ = [\"Database\"";
  for (int32_t i = 0; i < tarn_class_count(); ++i) out << ", \"" << tarn_class_name(i) << "\"";
  out << "]\n";
  for (int32_t i = 0; i < tarn_class_count(); ++i) write_class(out, tarn_class_name(i));
}

bool is_identifier(std::string_view name) {
  if (name.empty() || std::isdigit(static_cast<unsigned char>(name.front())) != 0) return false;
  for (const char c : name) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '_') return false;
  }
  return true;
}

void write_enumerations(std::ostream& out) {
  out << "import enum\nfrom typing import Any\n\nenumerations: dict[str, Any]\n\nclass Enumeration(enum.IntEnum):\n"
         "    @property\n    def text(self) -> str: ...\n\n__all__ = [";
  for (int32_t i = 0; i < tarn_enumeration_count(); ++i)
    out << (i == 0 ? "\"" : ", \"") << tarn_enumeration_name(i) << "\"";
  out << "]\n";
  for (int32_t i = 0; i < tarn_enumeration_count(); ++i) {
    const char* name = tarn_enumeration_name(i);
    out << "\nclass " << name << "(Enumeration):\n    \"\"\"" << quoted(codes_of(name)) << "\"\"\"\n";
    for (int32_t c = 0; c < tarn_code_count(name); ++c) {
      tarn_code code{};
      tarn_describe_code(name, c, &code);
      if (is_identifier(code.name)) out << "    " << code.name << " = " << code.value << "\n";
    }
  }
}

void write_kinds(std::ostream& out) {
  out << "from .kinds import Kind\nfrom . import _tarn\n\nclass Kinds:\n    \"\"\"The kinds of entity of a project, "
         "each a "
         "mapping by name.\"\"\"\n";
  for (int32_t i = 0; i < tarn_entity_kind_count(); ++i) {
    tarn_entity_kind kind{};
    tarn_describe_entity_kind(i, &kind);
    std::string name = kind.group;
    for (char& c : name) c = c == '-' ? '_' : c;
    out << "    " << name << ": Kind[_tarn." << kind.class_name << "]\n";
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "tarn_stubs FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = arguments[1];
  std::filesystem::create_directories(folder);
  std::ofstream classes(folder / "_tarn.pyi"), enumerations(folder / "_enumerations.pyi"), kinds(folder / "_kinds.pyi");
  write_classes(classes);
  write_enumerations(enumerations);
  write_kinds(kinds);
  const bool written = classes.flush() && enumerations.flush() && kinds.flush();
  if (!written) std::cerr << "cannot write into " << folder << '\n';
  return written ? 0 : 3;
}
