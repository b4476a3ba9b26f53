// Writes the pages of docs/reference/ from the declarations: classes, enumerations, record files, tables, commands, the
// schema of the exchange text, and the manual pages. A test compares them with the ones in the repository; `make
// reference` brings those up to date.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

#include "cli/command.h"
#include "cli/describe.h"
#include "cli/exchange_schema.h"
#include "cli/help.h"
#include "cli/manual.h"
#include "cli/topics.h"
#include "project/enumerations.h"
#include "project/kinds.h"
#include "project/new_index.h"
#include "reflect/allowed.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/base/value.h"
#include "tarn/class_list.h"

namespace {

using namespace tarn;
using namespace tarn::cli;

std::string bounds_text(const Member& member) {
  std::string text;
  for (const Bounds& b : member.bounds) {
    text += (text.empty() ? "(" : ", ") + std::to_string(b.first) + " to " + std::to_string(b.last);
  }
  return text.empty() ? text : text + ")";
}

std::string type_text(const Member& member) {
  std::string text(type_name(member.type));
  if (member.width() > 0) text += " of " + std::to_string(member.width());
  return text;
}

std::string row(std::initializer_list<std::string> cells) {
  std::string text = "|";
  for (const std::string& each : cells) text += " " + each + " |";
  return text + "\n";
}

std::string notes(const Object& sample, const Member& member) {
  if (member.kind == MemberKind::Event) return "event";
  if (!member.refers_to.empty()) return "index of a " + std::string(member.refers_to);
  std::string text = member.read_only ? "read-only" : member.by_reference ? "set by reference" : "";
  const auto add = [&](const std::string& more) { text += (text.empty() ? "" : ", ") + more; };
  if (const std::string allowed = allowed_numbers(sample, member); !member.read_only && !allowed.empty()) add(allowed);
  if (const Enumeration* codes = enumeration_of(member.labels)) add("code of `" + std::string(codes->name) + "`");
  if (!member.unit_beside.empty()) add("unit by `" + std::string(member.unit_beside) + "`");
  return text;
}

std::string codes(const ClassInfo& info) {
  std::string out;
  for (const Member& member : info.members) {
    const auto labels = named_codes(member);
    if (labels.empty()) continue;
    out += "\n### Codes of `" + std::string(member.name) + "`\n\n| code | name | text |\n| --- | --- | --- |\n";
    for (const Label& l : labels)
      out += row({std::to_string(l.code), "`" + std::string(l.name) + "`", std::string(l.text)});
  }
  return out;
}

/// Where the command line works on entities of a class.
std::string commands_of(std::string_view class_name) {
  std::string links;
  for (const EntityKind& kind : entity_kinds()) {
    const std::string group(kind.group);
    if (kind.class_name == class_name)
      links += (links.empty() ? " Commands: " : ", ") + ("[tarn " + group) + "](commands.md#tarn-" + group + ")";
  }
  return links.empty() ? links : links + ".";
}

std::string classes_page() {
  std::string out =
      "# Classes\n\nEvery class with its members, in interface order. Codes that engines define have the names of the "
      "shipped\n"
      "[code catalogue](../codes.md).\n";
  for (const ClassEntry& entry : class_list()) {
    const ClassInfo& info = *entry.info;
    const ObjectPtr sample = entry.create();
    out += "\n## " + std::string(info.name) + "\n\nFailures are " +
           (info.failures == Failures::Trapped ? "trapped and logged" : "raised") + "." + commands_of(info.name) +
           "\n\n| member | type | unit | notes |\n| --- | --- | --- | --- |\n";
    for (const Member& m : info.members)
      out += row({"`" + signature(m) + "`", m.is_part() ? "`" + std::string(m.owned().info().name) + "`" : type_text(m),
                  std::string(m.unit), notes(*sample, m)});
    out += codes(info);
  }
  return out;
}

std::string enumerations_page() {
  std::string out =
      "# Enumerations\n\nEvery enumeration with its codes: `tarn.AS_ConstituentMasks.CCM_INPUTMASK` in Python, "
      "`tarn_describe_code` in C,\n`tarn describe AS_ConstituentMasks` on the command line.\n";
  for (const Enumeration& each : enumeration_list()) {
    out += "\n## " + std::string(each.name) + "\n\n| code | name | text |\n| --- | --- | --- |\n";
    for (const Label& l : each.codes)
      out += row({std::to_string(l.code), "`" + std::string(l.name) + "`", std::string(l.text)});
  }
  return out;
}

std::vector<const Member*> stored_fields(const ClassInfo& info) {
  std::vector<const Member*> fields;
  for (const auto* list : {&info.members, &info.reserved}) {
    for (const Member& m : *list) {
      if (m.stored()) fields.push_back(&m);
    }
  }
  std::sort(fields.begin(), fields.end(),
            [](const Member* a, const Member* b) { return a->field()->offset() < b->field()->offset(); });
  return fields;
}

/// A part's record in the memory of an entity.
struct PartPlace {
  std::string path, group;  // "Layer(2)", and "Layer" for all of them
  const ClassInfo* info;
};

void add_places(Object& object, const std::string& prefix, std::map<const std::byte*, PartPlace>& places) {
  for (const Member& member : object.info().members) {
    if (!member.is_part()) continue;
    const int count = member.bounds.empty() ? member.part_count(object) : member.bounds.front().size();
    for (int number = 1; number <= (member.owned().numbered ? count : 1); ++number) {
      Object& part = member.part(object, number);
      const std::string group = prefix + std::string(member.owned().name);
      const std::string path = group + (member.owned().numbered ? "(" + std::to_string(number) + ")" : "");
      if (const auto record = part.part_record(); !record.empty()) places[record.data()] = {path, group, &part.info()};
      add_places(part, path + ".", places);
    }
  }
}

/// The records of an entity's parts as they lie in the file, those of one kind together.
void add_part_rows(Object& object, std::string& rows) {
  auto* entity = dynamic_cast<StoredEntity*>(&object);
  if (!entity) return;
  std::map<const std::byte*, PartPlace> places;
  add_places(object, "", places);
  size_t offset = 0, first = 0, count = 0;
  const PartPlace* open = nullptr;
  const auto close = [&] {
    if (!open) return;
    const std::string name = count == 1 ? open->path : open->group + "(1 to " + std::to_string(count) + ")";
    rows += row({std::to_string(first), std::to_string(count) + " x " + std::to_string(open->info->record_size),
                 "`" + name + "`", "`" + std::string(open->info->name) + "`", ""});
  };
  for (const auto& block : entity->file().blocks()) {
    const auto found = places.find(block.data());
    const PartPlace* place = found == places.end() ? nullptr : &found->second;
    if (place && open && place->group == open->group) {
      ++count;
    } else {
      close();
      open = place;
      first = offset;
      count = 1;
    }
    offset += block.size();
  }
  close();
}

struct Record {
  std::string rows;
  size_t size = 0;
};

/// A field of every record in a list is given once, for the first record, with the distance between records.
void add_field(Record& record, const Member& m) {
  const RecordField& field = *m.field();
  const size_t count = field.stride > 0 ? field.records : 1;
  const std::string more =
      field.stride > 0 ? " in each of " + std::to_string(count) + ", " + std::to_string(field.stride) + " apart" : "";
  std::string unit(m.stored_unit.empty() ? m.unit : m.stored_unit);
  if (field.wire == Wire::Scaled) unit += ", in 16-bit steps of 1/" + std::to_string(field.per_unit);
  record.rows += row({std::to_string(field.offset()), std::to_string(field.size) + more,
                      "`" + std::string(m.name) + bounds_text(m) + "`", type_text(m), unit});
  record.size = std::max(record.size, field.offset() + field.size + field.stride * (count - 1));
}

std::string files_page() {
  std::string out =
      "# Record files\n\n"
      "- Record n lies at byte n times the record's length. Record 0 is the kind's default.\n"
      "- Numbers are little-endian. Fields are not padded. Booleans have 16 bits: 0 and -1.\n"
      "- Texts have one byte for each character (code page 1252) and are padded with blanks.\n"
      "- The first subscript of an array varies fastest. The exception is a first subscript that counts months or "
      "days\n"
      "  of weather: their blocks follow one another.\n"
      "- Units are those of the values in the file.\n"
      "- Air systems, plants and buildings have a file each; it is given here without zones and hourly results.\n"
      "- Results of a design are records that follow one another ([results](../results.md)). In their tables the month "
      "is\n"
      "  the outer loop and the hour the inner one.\n";
  for (const ClassEntry& entry : class_list()) {
    const ClassInfo& info = *entry.info;
    const ObjectPtr object = entry.create();
    if (record_length(*object) == 0) continue;
    std::map<std::string_view, Record> records;
    for (const Member* m : stored_fields(info)) add_field(records[m->field()->record], *m);
    if (records.empty()) records[info.name];  // of parts alone
    for (auto& [name, record] : records) {
      if (records.size() == 1) {
        record.size = record_length(*object);
        add_part_rows(*object, record.rows);
      }
      out += "\n## " + std::string(info.name) + (records.size() > 1 ? ", " + std::string(name) : "") + ": " +
             std::to_string(record.size) +
             " bytes\n\n| offset | size | field | type | unit |\n"
             "| --- | --- | --- | --- | --- |\n" +
             record.rows;
    }
  }
  return out;
}

std::string tables_page() {
  std::string out =
      "# Tables\n\n## Kinds\n\n| kind | class | index table | written columns | link rows removed with it |\n"
      "| --- | --- | --- | --- | --- |\n";
  COM_ProjectData project;
  for (const EntityKind& kind : entity_kinds()) {
    const auto entity = make_entity(project, kind);
    std::string columns = "`nIndex`, `szName`";
    for (const SummaryColumn& column : entity->kind().columns) columns += ", `" + std::string(column.name) + "`";
    std::string links;
    for (const LinkColumn& link : link_columns_of(entity->kind(), entity->info())) {
      links += (links.empty() ? "`" : ", `") + link.table + "` by `" + link.column + "`";
      if (link.library != 0) links += " of library " + std::to_string(link.library);
    }
    out += row({std::string(kind.group), "`" + std::string(kind.class_name) + "`",
                "`" + std::string(entity->kind().index_table) + "`", columns, links});
  }
  return out + "\n## The index database\n\n```sql\n" + index_schema() + "```\n";
}

/// A text whose signs are those of Markdown, as it is.
std::string plain(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (std::string_view("*_<>|[]`\\").find(c) != std::string_view::npos) out += '\\';
    out += c;
  }
  return out;
}

/// What help says in a few words, as a sentence.
std::string sentence(std::string_view text) {
  std::string out = plain(text) + ".";
  out.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(out.front())));
  return out + "\n";
}

std::string code_block(std::string_view text) {
  return "\n```text\n" + std::string(text) + (text.ends_with('\n') ? "" : "\n") + "```\n";
}

std::string options_table(const std::vector<const OptionRow*>& options) {
  std::string rows;
  for (const OptionRow* option : options) {
    std::string words = std::string(option->spelling) + (option->value.empty() ? "" : " " + std::string(option->value));
    for (size_t at = 0; (at = words.find('|', at)) != std::string::npos; at += 2) words.insert(at, "\\");  // no column
    rows += row({"`" + words + "`", plain(option->help)});
  }
  return rows.empty() ? rows : "\n| option | what it does |\n| --- | --- |\n" + rows;
}

std::string verb_section(const Group& group, const Verb& verb) {
  std::string out;
  if (group.names_verbs()) out += "\n### tarn " + group.name + " " + verb.name + "\n\n" + sentence(verb.help);
  out += code_block(command_line(group, verb));
  auto options = options_of(verb);
  std::erase_if(options, [](const OptionRow* option) { return option->bit == 0; });
  out += options_table(options);
  if (verb.usage.find("Property=value") != std::string::npos && group.kind)
    out += "\nProperties are those of `" + std::string(group.kind->class_name) + "` and of its parts; `tarn " +
           group.name + " " + verb.name + " --help` lists them.\n";
  std::string examples;
  for (const std::string& example : verb.examples) examples += example + "\n";
  return out + (examples.empty() ? "" : "\nFor example:\n" + code_block(examples));
}

std::string commands_page() {
  std::string out =
      "# Commands\n\nEvery group with its verbs. How entities are chosen by number, name or pattern: [command "
      "line](../command-line.md).\n\n## Options of every verb\n";
  std::vector<const OptionRow*> common;
  for (const OptionRow& option : option_rows()) {
    if (option.bit == 0) common.push_back(&option);
  }
  out += options_table(common);
  for (const Group& group : all_groups()) {
    out += "\n## tarn " + group.name + "\n\n" + sentence(group.help);
    for (const Verb& verb : group.verbs) out += verb_section(group, verb);
  }
  for (const Topic& topic : topics()) {
    out += "\n## Topic: " + std::string(topic.name) + "\n\n" + plain(topic.title) + " (`tarn help " +
           std::string(topic.name) + "`)\n" + code_block(topic.text);
  }
  return out;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "tarn_reference FOLDER\n";
    return kUsage;
  }
  const std::filesystem::path folder(arguments[1]);
  std::filesystem::create_directories(folder);
  const std::pair<const char*, std::string> pages[]{
      {"classes.md", classes_page()},   {"enumerations.md", enumerations_page()},
      {"files.md", files_page()},       {"tables.md", tables_page()},
      {"commands.md", commands_page()}, {"exchange.schema.json", exchange_schema()}};
  for (const auto& [name, text] : pages) {
    if (!(std::ofstream(folder / name, std::ios::binary) << text).flush()) return kInputOutput;
  }
  std::filesystem::create_directories(folder / "man");
  for (const ManualPage& page : manual_pages()) {
    if (!(std::ofstream(folder / "man" / page.file, std::ios::binary) << page.text).flush()) return kInputOutput;
  }
  return kClean;
}
