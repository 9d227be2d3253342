"""shellcheck finds no fault in the shell scripts."""


def problems(tree):
    if scripts := tree.shell_scripts():
        # --external-sources: a script may read files that are not among the arguments.
        result = tree.run(["shellcheck", "--external-sources", "--format=gcc"], scripts)
        yield from (result.stdout + result.stderr).splitlines()
