/* The C interface: objects by class name, members by name or number, values as a tagged union, a status from each call.
 *
 * Objects are opaque handles. Whoever was given a handle releases it once with tarn_release. A handle that is null,
 * released, made up or of another thread is answered with TARN_BAD_HANDLE, never with a crash. Each thread has its own
 * database engine: an object stays on the thread that made it. Texts are UTF-8, ended by a NUL that their length does
 * not count; texts handed out stay valid until the next call on the same thread. */
#ifndef TARN_H
#define TARN_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define TARN_API __attribute__((visibility("default")))
#else
#define TARN_API
#endif

typedef struct tarn_object tarn_object;

typedef enum tarn_status {
  TARN_OK = 0,
  TARN_ERROR = 1,      /* see tarn_last_error */
  TARN_BAD_HANDLE = 2, /* null, released or foreign */
  TARN_NO_MEMBER = 3,  /* no such member, or of another kind */
  TARN_BAD_ARGUMENT = 4
} tarn_status;

typedef enum tarn_type {
  TARN_EMPTY,
  TARN_BOOLEAN,
  TARN_INT16,
  TARN_INT32,
  TARN_REAL32,
  TARN_REAL64,
  TARN_TEXT,
  TARN_OBJECT,
  TARN_REALS,
  TARN_ANY /* only for a result in tarn_member: its type is known after the call */
} tarn_type;

typedef enum tarn_kind { TARN_PROPERTY, TARN_METHOD, TARN_EVENT } tarn_kind;

typedef struct tarn_value {
  int32_t type;   /* tarn_type */
  int32_t length; /* of a text in bytes, of a list of reals in reals */
  union {
    int32_t boolean; /* 0 or 1 */
    int16_t i2;
    int32_t i4;
    float r4;
    double r8;
    const char* text;
    const double* reals; /* as a text, valid until the next call on the same thread */
    tarn_object* object; /* handed out: the caller releases it */
  } as;
} tarn_value;

typedef struct tarn_bounds {
  int32_t first, last;
} tarn_bounds;

typedef struct tarn_parameter {
  const char* name;
  int32_t type;
  int32_t optional, by_reference, in_out;
  int32_t sections; /* 1: which sections of an entity's file; tarn_load_entity and tarn_save_entity take them all */
} tarn_parameter;

typedef struct tarn_member {
  const char* name;
  const char* unit;
  int32_t kind; /* tarn_kind */
  int32_t type; /* of the property or the result */
  int32_t read_only, by_reference;
  int32_t bound_count, parameter_count;
  int32_t stored;           /* 1 where the value is part of what an entity keeps */
  int32_t text_width;       /* characters of a stored text, 0 for other values */
  const char* enumeration;  /* whose codes the property holds; "" for other values */
  const char* object_class; /* of the object that the member hands out; "" where it may be of several, and for others */
} tarn_member;

typedef struct tarn_code {
  int32_t value;
  const char* name;
  const char* text; /* for a person; may be empty */
} tarn_code;

/* Classes and their members, in interface order. Names out of range are NULL. */
TARN_API int32_t tarn_class_count(void);
TARN_API const char* tarn_class_name(int32_t number);
TARN_API int32_t tarn_member_count(const char* class_name); /* -1: no such class */
TARN_API tarn_status tarn_describe(const char* class_name, int32_t member, tarn_member* out);
TARN_API tarn_status tarn_describe_bounds(const char* class_name, int32_t member, int32_t dimension, tarn_bounds* out);
TARN_API tarn_status tarn_describe_parameter(const char* class_name, int32_t member, int32_t parameter,
                                             tarn_parameter* out);

/* Enumerations by name, in alphabetical order, and their codes; two names may share a value. Names out of range are
 * NULL. A property may hold other values than its enumeration has: they are kept as they are. */
TARN_API int32_t tarn_enumeration_count(void);
TARN_API const char* tarn_enumeration_name(int32_t number);
TARN_API int32_t tarn_code_count(const char* enumeration); /* -1: no such enumeration */
TARN_API tarn_status tarn_describe_code(const char* enumeration, int32_t code, tarn_code* out);

/* Objects. */
TARN_API tarn_status tarn_create(const char* class_name, tarn_object** out);
TARN_API tarn_status tarn_release(tarn_object* object);
TARN_API const char* tarn_class_of(tarn_object* object); /* NULL for a bad handle */

/* Members by number: their place in interface order, from 0; -1 where there is none. Letter case does not matter. */
TARN_API int32_t tarn_member_number(tarn_object* object, const char* name);
TARN_API tarn_status tarn_get(tarn_object* object, int32_t member, const int32_t* subscripts, int32_t count,
                              tarn_value* out);
TARN_API tarn_status tarn_let(tarn_object* object, int32_t member, const int32_t* subscripts, int32_t count,
                              const tarn_value* value);
/* In/out arguments come back in place: pass one value for every parameter, missing optional ones as TARN_EMPTY. */
TARN_API tarn_status tarn_call(tarn_object* object, int32_t member, tarn_value* arguments, int32_t count,
                               tarn_value* result);
/* Members by name. */
TARN_API tarn_status tarn_get_by_name(tarn_object* object, const char* name, const int32_t* subscripts, int32_t count,
                                      tarn_value* out);
TARN_API tarn_status tarn_let_by_name(tarn_object* object, const char* name, const int32_t* subscripts, int32_t count,
                                      const tarn_value* value);
TARN_API tarn_status tarn_call_by_name(tarn_object* object, const char* name, tarn_value* arguments, int32_t count,
                                       tarn_value* result);

/* A whole array of numbers or Booleans as one block, the first subscript varying fastest: int16_t for TARN_INT16 and
 * TARN_BOOLEAN (0 and -1), int32_t, float or double. `bytes` must be the array's exact size. */
TARN_API tarn_status tarn_get_block(tarn_object* object, int32_t member, void* data, size_t bytes);
TARN_API tarn_status tarn_let_block(tarn_object* object, int32_t member, const void* data, size_t bytes);

/* The same for values that a person gives: one that no building can have - a height below 0, a code that the property
 * has not, a text that is too long - is refused, as in a text to import. Of a block all is set, or nothing. */
TARN_API tarn_status tarn_let_allowed(tarn_object* object, int32_t member, const int32_t* subscripts, int32_t count,
                                      const tarn_value* value);
TARN_API tarn_status tarn_let_block_allowed(tarn_object* object, int32_t member, const void* data, size_t bytes);

/* Events: the listener may change the arguments in place, and returns 0; anything else makes the operation that raised
 * the event fail. Texts among the arguments are valid during the call. A null listener stops listening. */
typedef int32_t (*tarn_listener)(void* context, tarn_value* arguments, int32_t count);
TARN_API tarn_status tarn_listen(tarn_object* object, int32_t event, tarn_listener listener, void* context);

/* The last error of an object, or of the thread's last call for a null object. Returns its number, 0 for none. */
TARN_API int32_t tarn_last_error(tarn_object* object, const char** source, const char** description);

/* Whether classes that trap their failures raise them, too, on this thread: 1 or 0. Returns what was set before. */
TARN_API int32_t tarn_set_strict(int32_t strict);

/* The diagnostic log of this thread. A plain message has class_name, procedure and detail NULL, and its text in `text`.
 */
typedef void (*tarn_log)(void* context, const char* text, const char* component, const char* class_name,
                         const char* procedure, const char* detail);
TARN_API void tarn_set_log(tarn_log log, void* context);

/* Called by long calculations of this thread, so that a user interface can handle its pending events; null for none. */
typedef void (*tarn_yield)(void* context);
TARN_API void tarn_set_yield(tarn_yield yield, void* context);

/* The services of the host program on this thread, each of which replaces the product's own; NULL keeps that one, and a
 * null table brings all back. Texts that a service returns are read at once; NULL makes the operation fail. */
typedef struct tarn_host {
  void* context;
  const char* (*normalise_path)(void* context, const char* path); /* absolute, without dots; "" stays "" */
  const char* (*directory_form)(void* context, const char* path); /* ends in one separator; "" stays "" */
  const char* (*copy_name)(void* context, const char* name);      /* of a copy, from the original's */
  /* The open handle of the database in a file, as tarn_open_database gives it; it stays the client's to release. */
  tarn_object* (*database)(void* context, const char* path);
} tarn_host;
TARN_API tarn_status tarn_set_host(const tarn_host* services);

/* Files of the client's own instead of the operating system's, for every record file of this thread; a null table
 * brings those back. All functions are needed. Where nothing else is said they return 0 for success; anything else
 * makes the operation fail. Set it while no file is open and no transaction runs. The index database is no record file.
 */
typedef struct tarn_files {
  void* context;
  int32_t (*exists)(void* context, const char* path); /* 1 or 0; of a folder too */
  /* Mode 0 to read, 1 to write, 2 to write and create. `file` receives what stands for the file, NULL for a missing
   * one that is not to be created. */
  int32_t (*open)(void* context, const char* path, int32_t mode, void** file);
  void (*close)(void* context, void* file);
  int64_t (*read)(void* context, void* file, uint64_t offset, void* data, size_t bytes); /* bytes read, -1 on failure */
  int32_t (*write)(void* context, void* file, uint64_t offset, const void* data, size_t bytes);
  int64_t (*size)(void* context, void* file); /* -1 on failure */
  int32_t (*truncate)(void* context, void* file, uint64_t size);
  int32_t (*sync)(void* context, void* file);                         /* returns when the bytes are safe */
  int32_t (*remove)(void* context, const char* path);                 /* a missing file is no failure */
  int32_t (*rename)(void* context, const char* from, const char* to); /* a file of the new name is gone */
  int32_t (*sync_folder)(void* context, const char* folder);
} tarn_files;
TARN_API tarn_status tarn_set_files(const tarn_files* files);

/* Full path of a data file that the product ships: "chillers.dat", a record for each chiller type; "plant.dat", the
 * default plant. NULL where it is not found; the error says where it was looked for. Valid until the next call. */
TARN_API const char* tarn_shipped_file(const char* name);

/* Fills a CHL_Chiller from the performance map of a file in the JSON form of ASHRAE 205 (RS0001); it is not saved yet.
 * `notes`, which may be null, receives what a person should know of the result: full load and IPLV beside the stated
 * rating, and what was not carried over; a line each, ended by '\n'. Valid until the next call. After an error the
 * chiller is as it was. */
TARN_API tarn_status tarn_import_chiller(tarn_object* chiller, const char* path, const char** notes);

/* A value in another unit: tarn_convert(1.2, "m", "ft", &feet). Units are texts as tarn_describe gives them and as
 * people write them; alone, "F" and "C" are temperatures, "delta F" and "K" differences of them. TARN_ERROR, whose
 * description names what fits, for a text that is no unit and for a unit of something else. */
TARN_API tarn_status tarn_convert(double value, const char* from, const char* to, double* out);
/* The unit of a property's values in an object, in inch-pound units (`si` 0), as they are stored, or in the SI unit
 * that engineers use for them (1). "" where there is none. Valid until the thread's next call of it. */
TARN_API tarn_status tarn_unit(tarn_object* object, int32_t member, int32_t si, const char** unit);

/* Makes a new index database with every table, which a client does first; an existing file is refused. */
TARN_API tarn_status tarn_create_index(const char* path);
/* Makes the project of a COM_ProjectData that has its path and prefix: index database and default records, all of it
 * or nothing. */
TARN_API tarn_status tarn_create_project(tarn_object* project);
/* Copies a project, as it was committed last, to the path and prefix of another COM_ProjectData, while others may work
 * on it: all of it or nothing. The folder is made; a project that is there already is refused. */
TARN_API tarn_status tarn_copy_project(tarn_object* from, tarn_object* to);
/* Copies an entity, by its kind ("walls" or "Wall") and index, and all that it uses into another project, all of it or
 * nothing. `copied`, which may be null, receives a JSON array, what is used before what uses it: "kind", "index" and
 * "name" there, "reused" where an equal one was there already, and "from". Valid until the thread's next of these
 * calls, or of those below that tell what rests on what. */
TARN_API tarn_status tarn_copy_entity(tarn_object* from, const char* kind, int16_t index, tarn_object* to,
                                      const char** copied);

/* The kinds of entity that a project keeps, in the order in which they rest on each other. */
typedef struct tarn_entity_kind {
  const char* group; /* "air-systems": its name in all calls below */
  const char* one;   /* "air system" */
  const char* class_name;
  const char* factory;     /* of the project: "NewAirSystem" */
  const char* index_table; /* "AirSystemIndex" */
  int32_t record_size;     /* bytes of a record; 0 where each entity has a file of its own */
  int32_t field_count;     /* of a record */
} tarn_entity_kind;
TARN_API int32_t tarn_entity_kind_count(void);
TARN_API tarn_status tarn_describe_entity_kind(int32_t number, tarn_entity_kind* out);
/* A stored field of a kind's record, in interface order, those of parts too. Texts are one-byte characters of code page
 * 1252 padded with blanks, Booleans int16_t 0 or -1; the bytes of an array have its first subscript fastest. */
typedef struct tarn_record_field {
  const char* class_name; /* that has the member: of the entity, or of a part */
  const char* part;       /* what stands before the name: "Layer(2)."; "" for the entity's own */
  int32_t member;         /* its number in that class */
  int32_t offset, size;   /* in bytes, of all elements */
  int32_t type;           /* tarn_type of an element */
  int32_t element_size;
  const char* unit; /* of the bytes; a wall's thickness is kept in ft, and in inches as a property */
} tarn_record_field;
TARN_API tarn_status tarn_describe_record_field(const char* group, int32_t number, tarn_record_field* out);
/* Whole records of a kind from its record file into `data`, as this thread's open transaction sees them: record 0 is
 * the default, record n that of index n. `data` has room for `count` records, no byte less or more. `read` receives how
 * many there are; the file may end before. Which records are entities, the kind's index table tells: the record of a
 * deleted one keeps its last bytes. Errors: 5 for a kind without a record file, 53 for a missing file, 3343 for a
 * record that is cut short. */
TARN_API tarn_status tarn_read_records(tarn_object* project, const char* group, int32_t first, int32_t count,
                                       void* data, size_t bytes, int32_t* read);
/* A new entity of a kind with the values of the kind's default, for edits and Save. `type` names one of the types that
 * air systems, chillers and plants come in; null for the usual. */
TARN_API tarn_status tarn_new_entity(tarn_object* project, const char* group, const char* type, tarn_object** out);
/* Index, 0 for a new one, and name of an entity of any kind, without blanks; `name` is valid until the thread's next.
 */
TARN_API tarn_status tarn_describe_entity(tarn_object* entity, int32_t* index, const char** name);
/* Computes what follows from an entity's inputs, as after an edit: a window's performance, a wall's summary, a plant's
 * outputs. Of other kinds nothing follows. */
TARN_API tarn_status tarn_compute(tarn_object* entity);
/* Load and Save of an entity of any kind as a whole: of a plant too, whose own methods ask which of its sections. */
TARN_API tarn_status tarn_load_entity(tarn_object* entity, int16_t index);
TARN_API tarn_status tarn_save_entity(tarn_object* entity);

/* The project as JSON text, valid until the thread's next export; `groups` are kinds with blanks between, null for
 * all. `progress`, which may be null, is called after each entity; `total` is 0 where it is not known. */
typedef void (*tarn_progress)(void* context, size_t done, size_t total);
TARN_API tarn_status tarn_export(tarn_object* project, const char* groups, tarn_progress progress, void* context,
                                 const char** text);
/* Brings the entities of such a text in, all of them or none; `count`, which may be null, receives their number. */
TARN_API tarn_status tarn_import(tarn_object* project, const char* text, tarn_progress progress, void* context,
                                 int32_t* count);
/* Brings a building in from a gbXML file, all or none: spaces with envelope and loads, types, schedules, air systems.
 * `account`, which may be null, receives a JSON object: "made", "updated" and "unchanged" entities, "elements" that
 * were found and taken, "areas" by kind and exposure in ft2 with conductances in Btu/(hr.F), what was "left" and why,
 * "notes". Valid until the thread's next import. docs/gbxml.md tells what becomes what. */
TARN_API tarn_status tarn_import_gbxml(tarn_object* project, const char* path, tarn_progress progress, void* context,
                                       const char** account);
/* The project as gbXML of the schema 6.01, valid until the thread's next export. `notes`, which may be null, receives
 * what has no place in it; a line each, ended by '\n'. */
TARN_API tarn_status tarn_export_gbxml(tarn_object* project, tarn_progress progress, void* context, const char** text,
                                       const char** notes);
/* Fills a HW1ReaderWriter from an EPW, TMY3, TMY2 or hourly file. With a `project`, which may be null, the year becomes
 * its simulation weather, saved at once. `report`, which may be null, receives a JSON object: "format", "source" and
 * "notes", what was changed, chosen or left out. Valid until the thread's next import. */
TARN_API tarn_status tarn_import_weather(tarn_object* year, const char* path, tarn_object* project,
                                         const char** report);
/* Brings the record bytes of all committed saves of this thread to the disk now: before another program replaces record
 * files. The last program that closes a project does it by itself. */
TARN_API tarn_status tarn_settle(void);
/* The same for the project of one open index database. */
TARN_API tarn_status tarn_settle_database(tarn_object* database);
/* The product's own shared handle of an existing index database, for SetDBHandle. */
TARN_API tarn_status tarn_open_database(const char* path, tarn_object** out);
/* Statements of the client's own; the rows changed come back. Values are bound to the '?' of the statement. Those that
 * begin or end a transaction, attach a database or change a setting are refused, here and in tarn_query: use
 * tarn_begin, tarn_commit and tarn_rollback. */
TARN_API tarn_status tarn_execute(tarn_object* database, const char* sql, const tarn_value* parameters, int32_t count,
                                  int32_t* changed);
/* Rows of a query: `row` is called for each with its column names and values. */
typedef void (*tarn_row)(void* context, const char* const* names, const tarn_value* values, int32_t count);
TARN_API tarn_status tarn_query(tarn_object* database, const char* sql, const tarn_value* parameters, int32_t count,
                                tarn_row row, void* context);

/* A file under a number, 1 to 511, for Load and Save of result blocks; each thread has its own numbers. A file to
 * write need not exist. What is written replaces the old file when it is closed; a failure leaves the old file. */
TARN_API tarn_status tarn_open_file(const char* path, int32_t write, int16_t* number);
TARN_API tarn_status tarn_close_file(int16_t number);
/* Closes the file and drops what was written to it. */
TARN_API tarn_status tarn_drop_file(int16_t number);
/* The position after the last block, counted from 1. */
TARN_API tarn_status tarn_file_position(int16_t number, int32_t* position);

/* What is damaged in the project of a COM_ProjectData, as a JSON array of findings, each with "severity", "kind",
 * "index", "name", "property", "what", "remedy" and "repairable"; empty for a sound project. Nothing is changed. The
 * text is valid until the thread's next check or repair. */
TARN_API tarn_status tarn_check(tarn_object* project, const char** findings);
/* Repairs what can be repaired, all of it or nothing, and keeps a copy of the project beside it; a project without
 * repairable findings is not touched. `dry_run` changes nothing; `rebuild_index` makes the index database anew from the
 * record files. The report is a JSON object: "found" and "left", both findings, and "copy", the folder of the copy. */
TARN_API tarn_status tarn_repair(tarn_object* project, int32_t dry_run, int32_t rebuild_index, const char** report);

/* What rests on what in a project, as JSON arrays, each valid until the thread's next of these calls. `kind` is "walls"
 * or "Wall". What an entity refers to, and who refers to it: "kind", "index", "name" and "slot", the field that does.
 */
TARN_API tarn_status tarn_uses(tarn_object* project, const char* kind, int16_t index, const char** uses);
TARN_API tarn_status tarn_used_by(tarn_object* project, const char* kind, int16_t index, const char** users);
/* Stale results: "kind", "index", "name", "results" ("design" or "simulation"), "calculated", "edited" (whose edit made
 * them stale, null where it is not known), "since" (UTC) and "way", from the edited entity to this one. */
TARN_API tarn_status tarn_stale(tarn_object* project, const char** results);
/* A whole project as a JSON object: "entities", each with what it "uses", "stale" as above, and "current", the results
 * that are up to date. tarn_picture draws it. */
TARN_API tarn_status tarn_graph(tarn_object* project, const char** graph);
/* What differs between two projects, or a project and a text of tarn_export: "kind", "name", "property", "unit",
 * "first" and "second". `tolerance` is relative, of real numbers. */
TARN_API tarn_status tarn_compare(tarn_object* first, tarn_object* second, double tolerance, const char** differences);
TARN_API tarn_status tarn_compare_text(tarn_object* project, const char* text, double tolerance,
                                       const char** differences);

/* The picture of an object as SVG text: of a CA_ConstructionAssly its section and response, of a SCH_Schedule its year,
 * of a CHL_Chiller or BLR_Boiler its curves, of a PLT_Plant a schematic, of a HW1ReaderWriter its year, of an
 * ADL_AirSystemDesign its loads and the states of its air, of a COM_ProjectData who uses whom. Other classes have none:
 * error 5. What shows stale results says "stale". Valid until the thread's next picture. */
TARN_API tarn_status tarn_picture(tarn_object* object, const char** svg);
/* A project as one self-contained page of HTML, in "ip" or "si" units; null is "ip". `progress`, which may be null, is
 * called after each section. Valid until the thread's next report. docs/report.md tells what it has. */
TARN_API tarn_status tarn_report(tarn_object* project, const char* units, tarn_progress progress, void* context,
                                 const char** html);

/* Transactions over all saves of this thread, files included; they nest. */
TARN_API tarn_status tarn_begin(void);
TARN_API tarn_status tarn_commit(void);
TARN_API tarn_status tarn_rollback(void);

#ifdef __cplusplus
}
#endif

#endif
