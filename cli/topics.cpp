#include "cli/topics.h"

namespace tarn::cli {
namespace {

constexpr Topic kTopics[]{
    {"choosing", "how to name what a verb works on",
     R"text(An entity is named by its number, its name or a pattern:

  tarn windows show 3
  tarn windows show "South 4x5"
  tarn windows show "South*"

A word of digits alone is a number. Otherwise the name counts as it is written, then without regard to upper and lower
case, then as a pattern: * is any text, ? one character, [a-f] one of several. Where several entities fit, the verb
does nothing and lists them; show shows all that fit a pattern. set and delete take --all: to change all of them, or none
where one of them cannot be changed:

  tarn windows set "South*" FrameType=2 --all

A property that refers to another entity takes a name, too: spaces set 1 "Wall(1).WallType=Outer".
)text"},
    {"codes", "properties that hold one of several choices",
     R"text(A property such as FuelType of a boiler holds a code. It is set by number, name or text:

  tarn boilers set 1 FuelType=4
  tarn boilers set 1 FuelType=BFT_NATURAL_GAS
  tarn boilers set 1 "FuelType=natural gas"

tarn boilers new --help lists the codes of each property, tarn describe those of every enumeration. A file may hold a
code that its list does not have; it is shown as a number and kept.
)text"},
    {"files", "what a project consists of",
     R"text(A project is a folder and a prefix. For /jobs/mall with the prefix MALL:

  MALLINX.MDB   the index database: a row for each entity and each use of one by another
  MALLWIN.DAT   the records of the windows; DOR doors, SHD shades, WAL walls, ROF roofs, SCH schedules, SPC spaces,
                CHL chillers, BLR boilers, TWR towers, ERT and FRT electric and fuel rates
  MALLA01.DAT   air system 1; P01 plant 1, B01 building 1; number 00 is the default
  MALLD01.DAT   results of the design calculation of air system 1
  MALLHW1.DAT   hourly weather, with WTD and WTA design and simulation weather
  MALLGBXML.JSON  ids of imported gbXML files, so that a second import updates the first

tarn -p /jobs/mall finds the one project in the folder, tarn -p /jobs/mall/MALL names it. Without -p it is the one in
the current folder. Every change is complete or has not happened, whatever stops the computer. Reading makes no file.
)text"},
    {"lists", "conditions, columns and order of a list",
     R"text(A list shows the index rows, or properties by name:

  tarn windows list --columns "Name,Height,GlassTrans(1)" --sort Height --reverse
  tarn walls list --where "Layer(2).Thickness>=4 and not Name~Old*" --csv

A condition compares properties with = <> < <= > >= or ~ for a pattern (!~ for none), joined by and, or, not and
brackets. Texts with blanks stand in quotes: "Name='South 4x5'". Codes compare by number, name or text, and
references by number or name: "Wall(1).WallType=Brick". Upper and lower case are the same. A number may have its unit:
"Layer(2).Conductivity>0.04 W/m K". What an entity does not have, such as a third zone, fits no comparison.
)text"},
    {"staleness", "results that no longer rest on their inputs",
     R"text(Results rest on inputs. When a window is changed, the spaces that use it are different, and so are the loads of
the air systems that serve these spaces, of the plants that serve the systems, and of the buildings that hold them. A
save marks all of these in the same transaction: air systems and plants to size again, to simulate again, buildings to
simulate again. Results stay where they are until the calculation runs again.

  tarn project stale       what is stale, since which edit, and how that edit reaches it
  tarn project graph       the whole project: who uses whom; --svg FILE draws it, stale results red
  tarn project info        counts what is stale
  tarn windows used-by 3   who uses window 3, by which property
  tarn spaces uses 2       what space 2 rests on

An edit tells what it made stale. Changing a name alone marks nothing. Editing an air system, plant or building clears its own results.
)text"},
    {"units", "the units of the numbers",
     R"text(Numbers are in the units of the files: ft, in, ft2, F, Btu/hr, Btu/(hr.ft2.F), CFM, gpm, tons, kW; with --units si,
or TARN_UNITS=si, in m, mm, m2, C, W, W/(m2.K), L/s, kW. A value may carry its unit, whatever the system; it is converted
exactly, and told. JSON stays in the units of the files.

  tarn windows set 1 Height=1.2m
  tarn --units si walls show 1

The help of a verb gives the unit of each property:

  tarn walls set --help
  tarn describe CA_Layer

Where another property chooses the unit, as the flow of a boiler's water, set that property too.
)text"}};

}  // namespace

std::span<const Topic> topics() { return kTopics; }

}  // namespace tarn::cli
