"""A new project with a window and a chiller, by the Python package: python3 job.py FOLDER"""

import sys

import tarn

with tarn.new_project(f"{sys.argv[1]}/JOB") as project:
    window = project.windows.new(name="South 4x5", height=4, width=5)
    chiller = project.chillers.new(type="WATER_COOLED_CENTRIFUGAL", name="CH-1")
    print(f"{window.name}: {window.overall_u_value:.3f} Btu/(hr.ft2.F)")
    print(f"{chiller.name}: {chiller.cooling_mode.fl_capacity:.0f} tons")
