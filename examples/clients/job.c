/* A new project with a window and a chiller, by the C interface.
 *
 *   cc job.c $(pkg-config --cflags --libs tarn-c) -o job && ./job FOLDER
 */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <tarn/tarn.h>

/* Ends the program with the error of the object, or of the last call where there is none. */
static void must(tarn_status status, tarn_object* object) {
  const char* source = "";
  const char* description = "";
  if (status == TARN_OK) return;
  const int number = tarn_last_error(object, &source, &description);
  fprintf(stderr, "error %d in %s: %s\n", number, source, description);
  exit(1);
}

static void set_text(tarn_object* object, const char* name, const char* text) {
  tarn_value value = {.type = TARN_TEXT, .length = (int32_t)strlen(text), .as.text = text};
  must(tarn_let_by_name(object, name, NULL, 0, &value), object);
}

static void set_real(tarn_object* object, const char* name, double real) {
  tarn_value value = {.type = TARN_REAL64, .as.r8 = real};
  must(tarn_let_by_name(object, name, NULL, 0, &value), object);
}

static double real32(tarn_object* object, const char* name) {
  tarn_value value;
  must(tarn_get_by_name(object, name, NULL, 0, &value), object);
  return (double)value.as.r4;
}

static void save(tarn_object* entity) {
  must(tarn_compute(entity), entity);
  must(tarn_call_by_name(entity, "Save", NULL, 0, NULL), entity);
}

int main(int count, char** arguments) {
  tarn_object *project, *window, *chiller;
  tarn_value cooling;
  if (count != 2) {
    fprintf(stderr, "usage: job FOLDER\n");
    return 2;
  }
  tarn_set_strict(1); /* a failed save is an error, and not a line of the log */
  must(tarn_create("COM_ProjectData", &project), NULL);
  set_text(project, "WorkPath", arguments[1]);
  set_text(project, "FilePrefix", "JOB");
  must(tarn_create_project(project), project);

  must(tarn_new_entity(project, "windows", NULL, &window), project);
  set_text(window, "Name", "South 4x5");
  set_real(window, "Height", 4);
  set_real(window, "Width", 5);
  save(window);

  must(tarn_new_entity(project, "chillers", "WATER_COOLED_CENTRIFUGAL", &chiller), project);
  set_text(chiller, "Name", "CH-1");
  save(chiller);
  must(tarn_get_by_name(chiller, "CoolingMode", NULL, 0, &cooling), chiller);

  printf("South 4x5: %.3f Btu/(hr.ft2.F)\n", real32(window, "OverallUValue"));
  printf("CH-1: %.0f tons\n", real32(cooling.as.object, "FLCapacity"));

  tarn_release(cooling.as.object);
  tarn_release(chiller);
  tarn_release(window);
  tarn_release(project);
  return 0;
}
