"""Build folders that are configured with other options than this build, but contain its products."""
import os
import re
import shutil
from pathlib import Path

from installation import SOURCES

BUILD = Path(os.environ["DOVREL_BINARY_DIR"])


def configured_build(test, name, options, products):
    """Configures a build folder and puts the products of that name into it. Returns its path. It is kept for the next
    test, because to examine the compilers takes the most time."""
    folder = BUILD / "tests/installation/builds" / name
    for manifest in folder.glob("install_manifest*"):
        manifest.unlink()
    compilers = re.findall(r"^(CMAKE_\w+_COMPILER):\w+=(.*)$", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE)
    settings = " ".join(f'-D{variable}="{value}"' for variable, value in compilers)
    result = test.run_as(True, f'cmake -S "{SOURCES}" -B "{folder}" -G Ninja {settings} -DDOVREL_TESTS=OFF {options}', "/")
    test.expect(result, 0)
    for bundle in ("Dovrel.bundle", "Merrowd.app"):
        shutil.rmtree(folder / bundle)
        shutil.copytree(BUILD / bundle, folder / bundle)
    built = BUILD / "tests/installation" / products
    shutil.copy(built / "dovrel", folder / "Dovrel.bundle/Contents/MacOS/Dovrel")
    shutil.copy(built / "Merrowd", folder / "Merrowd.app/Contents/MacOS/Merrowd")
    shutil.copy(built / "dovrel_tool", folder / "tools/dovrel")
    shutil.copytree(BUILD / "tools/completion", folder / "tools/completion", dirs_exist_ok=True)
    return folder
