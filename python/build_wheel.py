"""Builds the wheel, as pip asks a project for it: one file for every Python from 3.9 with the library and the shipped
data inside. SQLite stays the system's, so that Python's own `sqlite3` and this package share one: two copies of SQLite in
one process drop each other's file locks.

The bytes depend on the sources alone: entries are in order of their names, and bear the time in SOURCE_DATE_EPOCH.
"""

from __future__ import annotations

import base64
import hashlib
import os
import subprocess
import sys
import sysconfig
import time
import zipfile
from pathlib import Path

SOURCE = Path(__file__).resolve().parent.parent
BUILD = SOURCE / "build-wheel"
FIRST_ZIP_YEAR = 315532800  # 1980-01-01, before which a ZIP file knows no time


def _tag() -> str:
    return "cp39-abi3-" + sysconfig.get_platform().replace("-", "_").replace(".", "_")


def _build() -> None:
    for command in (["cmake", "--preset", "wheel"], ["cmake", "--build", str(BUILD), "--target", "tarn_python", "tarn_shipped"]):
        subprocess.run(command, cwd=SOURCE, check=True, stdout=sys.stderr)


def _package() -> dict[str, bytes]:
    """Every file of the package by its name in the wheel."""
    folders = {BUILD / "python" / "tarn": "tarn", BUILD / "share" / "tarn": "tarn/share/tarn"}
    return {f"{name}/{path.name}": path.read_bytes() for folder, name in folders.items() for path in folder.iterdir() if path.is_file()}


def _metadata() -> tuple[bytes, str]:
    metadata = (BUILD / "python" / "METADATA").read_bytes()
    version = next(line for line in metadata.decode().splitlines() if line.startswith("Version: "))
    return metadata, version.split()[1]


def _record(files: dict[str, bytes], own_name: str) -> bytes:
    rows = []
    for name, data in sorted(files.items()):
        digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
        rows.append(f"{name},sha256={digest},{len(data)}\n")
    return "".join([*rows, f"{own_name},,\n"]).encode()


def build_wheel(wheel_directory: str, config_settings: object = None, metadata_directory: str | None = None) -> str:
    _build()
    metadata, version = _metadata()
    info = f"tarn-{version}.dist-info"
    files = _package()
    files[f"{info}/METADATA"] = metadata
    files[f"{info}/LICENSE"] = (SOURCE / "LICENSE").read_bytes()
    files[f"{info}/WHEEL"] = f"Wheel-Version: 1.0\nGenerator: tarn {version}\nRoot-Is-Purelib: false\nTag: {_tag()}\n".encode()
    files[f"{info}/RECORD"] = _record(files, f"{info}/RECORD")

    name = f"tarn-{version}-{_tag()}.whl"
    moment = time.gmtime(max(int(os.environ.get("SOURCE_DATE_EPOCH", FIRST_ZIP_YEAR)), FIRST_ZIP_YEAR))[:6]
    with zipfile.ZipFile(Path(wheel_directory) / name, "w", zipfile.ZIP_DEFLATED) as wheel:
        for entry, data in sorted(files.items()):
            described = zipfile.ZipInfo(entry, moment)
            described.compress_type = zipfile.ZIP_DEFLATED
            described.external_attr = (0o755 if entry.endswith(".so") else 0o644) << 16
            wheel.writestr(described, data)
    return name


def build_sdist(sdist_directory: str, config_settings: object = None) -> str:
    raise NotImplementedError("scripts/packages makes the source archive")
