#!/bin/sh
# A new project with a window and a chiller, by the shell: job.sh FOLDER
set -eu
job=$1/JOB
tarn -p "$job" project new >/dev/null
tarn -p "$job" windows new Name="South 4x5" Height=4 Width=5 >/dev/null
tarn -p "$job" chillers new --type WATER_COOLED_CENTRIFUGAL Name=CH-1 >/dev/null
tarn -p "$job" windows list --columns Name,OverallUValue --csv |
  awk -F, 'NR > 1 { printf "%s: %.3f Btu/(hr.ft2.F)\n", $1, $2 }'
tarn -p "$job" chillers list --columns Name,CoolingMode.FLCapacity --csv | awk -F, 'NR > 1 { printf "%s: %.0f tons\n", $1, $2 }'
