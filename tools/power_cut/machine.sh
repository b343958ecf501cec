# shellcheck shell=bash
# The virtual machine of scripts/power-cut and scripts/card-cost: user-mode Linux with the host's files as its own,
# read-only. Sourced from the top of the tree; leaves with 77 where it doesn't start.

# machine FOLDER SCRIPT ARGUMENT...: runs tools/SCRIPT as process 1, with the arguments on the kernel's command line and
# FOLDER, where it may write, as OUT. Its console goes to FOLDER/console.
machine() {
  local out=$1 script=$2
  shift 2
  linux.uml mem=384M root=/dev/root rootfstype=hostfs rootflags=/ ro init="$PWD/tools/$script" con=null con0=null,fd:1 \
    quiet OUT="$out" "$@" </dev/null >>"$out/console" 2>&1 || true
  grep -q '^guest: exit 0' "$out/console" || { tail "$out/console" >&2; return 1; }
}

linux.uml --version >/dev/null 2>&1 || { echo "User-mode Linux doesn't start here." >&2; exit 77; }
