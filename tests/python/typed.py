"""What type checkers must find of the package: mypy --strict passes over this file, and every line marked "wrong" fails
without its mark."""

import tarn


def by_name(project: tarn.Project) -> float:
    window = project.windows["South 4x5"]
    window.height = 4
    window.glass_trans = [0.7, 0.6, 0.5]
    window.glass_trans[2] = 0.78
    window.load("one")  # type: ignore[arg-type]  # wrong
    window.heigth = 3  # type: ignore[attr-defined]  # wrong
    project.window  # type: ignore[attr-defined]  # wrong
    project.air_systems[1].get_air_system().name = 3  # type: ignore[assignment]  # wrong
    plant = project.plants[1]
    plant.load(2)
    plant.save()
    saved: bool = plant.save(tarn.PLT_ConstituentMasks.CCM_DETAILS)
    plant.save("all")  # type: ignore[call-overload]  # wrong
    project.buildings[1].save()
    project.walls[1].Save()
    names: list[str] = list(project.windows)
    window.on_update_dependencies = lambda override: len(names) > 1
    return window.overall_u_value + window.glass_trans[1]


def classic() -> str:
    window: tarn.WIN_Window = tarn.COM_ProjectData().NewWindow()
    window.CalculatePerformance()
    code: int = tarn.CA_ConstructionAssly().Save(0)
    months: list[tarn.Months] = [tarn.Months.January]
    return window.Name + str(code) + months[0].text
