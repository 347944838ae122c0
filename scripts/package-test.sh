#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Checks the Debian package as a user gets it. First, as anyone: lintian reports no error, the
# package holds only what it should, and its desktop entry validates. Then, as root: dpkg
# installs it into a scratch root, and the installed programs run from /usr/bin in a private
# mount namespace where the scratch root lies over /usr and the source tree (with its build
# folders) is hidden: `lumenscribe-cli --version`, JSON inspections of a photo and of a PDF
# through the installed decoder worker, `man` on both pages, Tab completion and the window
# under Xvfb. Last, dpkg removes the package, which must leave nothing behind.
#
# With --chroot DIR, a Debian 12 tree (debootstrap bookworm DIR) that reaches a mirror, the
# package is installed there with apt instead, which shows whether its dependencies are
# complete on a fresh system, then removed again.
#
# Without root or passwordless sudo, the installing part is skipped with a message.
# Usage: scripts/package-test.sh [--chroot DIR] [PACKAGE.deb]
#        (without a package, scripts/package.sh builds one)
set -euo pipefail

usage() {
  echo "usage: scripts/package-test.sh [--chroot DIR] [PACKAGE.deb]" >&2
  exit 2
}

chroot_dir=""
installing_only=false
deb=""
while (($#)); do
  case $1 in
    --chroot) (($# >= 2)) || usage; chroot_dir=$(realpath "$2"); shift 2 ;;
    --installing-only) installing_only=true; shift ;; # how the script calls itself via sudo
    -*) usage ;;
    *) [ -z "$deb" ] || usage; deb=$(realpath "$1"); shift ;;
  esac
done

cd "$(dirname "$0")/.."
source_tree=$PWD

failures=0
pass() { echo "ok: $*"; }
fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}

scratch=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-package-test.XXXXXX")
mounted=()
cleanup() {
  local i
  for ((i = ${#mounted[@]} - 1; i >= 0; i--)); do umount -R "${mounted[i]}" 2>/dev/null || true; done
  rm -rf "$scratch"
}
trap cleanup EXIT

# The items inspected through the installed programs, by kind: where they come from, and
# their names in the installed system's view.
declare -A origin=([photo]=tests/data/image/camera_gps_south_west.jpg
  [pdf]=tests/data/health/three_pages.pdf)
declare -A fixture=([photo]=photo.jpg [pdf]=document.pdf)

# ---- what anyone can check ----------------------------------------------------------------

check_package_file() {
  echo "== lintian"
  # Errors fail; warnings are listed, and the README says why each one stays.
  if lintian --fail-on error --tag-display-limit 0 "$deb"; then
    pass "lintian reports no error"
  else
    fail "lintian reports errors"
  fi

  echo "== contents"
  local path unexpected=()
  while IFS= read -r path; do
    case $path in
      ./usr/bin/lumenscribe | ./usr/bin/lumenscribe-cli) ;;
      ./usr/libexec/lumenscribe/lumenscribe-decoder) ;;
      ./usr/share/applications/lumenscribe.desktop) ;;
      ./usr/share/icons/hicolor/*/apps/lumenscribe.png) ;;
      ./usr/share/icons/hicolor/scalable/apps/lumenscribe.svg) ;;
      ./usr/share/man/man1/lumenscribe.1.gz | ./usr/share/man/man1/lumenscribe-cli.1.gz) ;;
      ./usr/share/bash-completion/completions/lumenscribe-cli) ;;
      ./usr/share/doc/lumenscribe/*) ;;
      */) ;;
      *) unexpected+=("$path") ;;
    esac
  done < <(dpkg-deb --fsys-tarfile "$deb" | tar -t)
  if ((${#unexpected[@]})); then
    fail "the package holds files it should not: ${unexpected[*]}"
  else
    pass "the package holds only the programs, the worker and their documents"
  fi
  mkdir -p "$scratch/extracted"
  dpkg-deb -x "$deb" "$scratch/extracted"
  local size png missing=()
  for size in 16 22 24 32 48 64 128 256 512; do
    png=$scratch/extracted/usr/share/icons/hicolor/${size}x${size}/apps/lumenscribe.png
    file -b "$png" 2>/dev/null | grep -q "PNG image data, $size x $size," || missing+=("$size")
  done
  if ((${#missing[@]})); then
    fail "no icon of ${missing[*]} pixels"
  else
    pass "icons of 16 to 512 pixels"
  fi
  if desktop-file-validate "$scratch/extracted/usr/share/applications/lumenscribe.desktop"; then
    pass "desktop-file-validate accepts the desktop entry"
  else
    fail "desktop-file-validate rejects the desktop entry"
  fi
  if dpkg-deb -f "$deb" Depends | grep -q 'libvips' &&
    dpkg-deb -f "$deb" Depends | grep -q 'shared-mime-info'; then
    pass "Depends: $(dpkg-deb -f "$deb" Depends)"
  else
    fail "Depends lacks the linked libraries or the run-time tools: $(dpkg-deb -f "$deb" Depends)"
  fi
}

# ---- what only root can check -------------------------------------------------------------

# Runs a command in the installed system: chrooted into --chroot DIR, or in a private mount
# namespace where the scratch root lies over /usr and the source tree is hidden.
installed() {
  if [ -n "$chroot_dir" ]; then
    chroot "$chroot_dir" /usr/bin/env -i PATH=/usr/bin:/bin HOME=/root LC_ALL=C.UTF-8 "$@"
  else
    unshare --mount --propagation private -- /bin/sh -c '
      mount -t overlay overlay -o "lowerdir=$1/usr:/usr" /usr &&
      mount -t tmpfs tmpfs "$2" || exit 125
      cd / && shift 2
      exec "$@"' sh "$root" "$source_tree" "$@"
  fi
}

# Reads the JSON report in file $1 for item kind $2 and prints what is missing, if anything.
json_gaps() {
  python3 - "$1" "$2" <<'PY'
import json, sys
with open(sys.argv[1], encoding="utf-8") as report:
    result = json.loads(report.readline())
rows = {row["label"]: row["value"] for s in result["sections"] for row in s["rows"]}
titles = [s["title"] for s in result["sections"]]
wanted = {
    # Exiv2 and libvips in the worker read the camera, the place and the pixels.
    "photo": [("Camera" in titles, "a Camera section"), ("Location" in titles, "a Location section"),
              (rows.get("Assessment") == "Looks intact", "Assessment: Looks intact"),
              (any(k.startswith("EXIF ") for k in result["rawMetadata"]), "EXIF raw metadata")],
    # poppler in the worker counts the pages.
    "pdf": [(rows.get("PDF Structure") == "3 pages readable", "PDF Structure: 3 pages readable"),
            (rows.get("Assessment") == "Looks intact", "Assessment: Looks intact")],
}[sys.argv[2]]
print(", ".join(what for present, what in wanted if not present))
PY
}

# The worker says once on stderr when it cannot shut itself in fully; where the kernel offers
# Landlock, it must not have to.
stderr_clean() {
  [ ! -s "$1" ] && return 0
  if ! grep -qw landlock /sys/kernel/security/lsm 2>/dev/null &&
    ! grep -qv 'does not let the decoder shut itself in fully' "$1"; then
    return 0
  fi
  return 1
}

check_command_line() {
  local version expected
  expected="lumenscribe-cli $(dpkg-deb -f "$deb" Version)"
  version=$(installed /usr/bin/lumenscribe-cli --version 2>&1) || true
  if [ "$version" = "$expected" ]; then
    pass "$version"
  else
    fail "lumenscribe-cli --version says '$version', not '$expected'"
  fi

  local kind gaps
  for kind in photo pdf; do
    if ! installed /usr/bin/lumenscribe-cli --json "$fixtures/${fixture[$kind]}" \
      >"$scratch/$kind.json" 2>"$scratch/$kind.err"; then
      fail "lumenscribe-cli --json on a $kind failed: $(cat "$scratch/$kind.err")"
      continue
    fi
    gaps=$(json_gaps "$scratch/$kind.json" "$kind")
    if [ -n "$gaps" ]; then
      fail "the $kind's JSON report lacks $gaps (is the installed worker found?)"
    elif ! stderr_clean "$scratch/$kind.err"; then
      fail "lumenscribe-cli --json on a $kind said on stderr: $(cat "$scratch/$kind.err")"
    else
      pass "JSON inspection of a $kind through the installed worker"
    fi
  done
}

check_manual_pages() {
  local page path
  for page in lumenscribe lumenscribe-cli; do
    path=$(installed man -w "$page" 2>&1) || true
    if [ "$path" != "/usr/share/man/man1/$page.1.gz" ]; then
      fail "man -w $page finds '$path'"
    elif ! installed env MANWIDTH=80 man -l "$path" >"$scratch/$page.man" 2>&1 ||
      ! grep -q "SEE ALSO" "$scratch/$page.man"; then
      fail "man -l $path: $(head -n 5 "$scratch/$page.man")"
    else
      pass "man $page"
    fi
  done
}

check_completion() {
  local words
  # bash-completion loads the file by the command's name, as on the first Tab.
  words=$(installed /bin/bash -c '
    cd "$1" && source /usr/share/bash-completion/bash_completion || exit 1
    try() {
      COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMP_LINE="$*"; COMP_POINT=${#COMP_LINE}
      COMPREPLY=()
      _completion_loader lumenscribe-cli
      local function; function=$(complete -p lumenscribe-cli | sed "s/.*-F \([^ ]*\) .*/\1/")
      "$function" lumenscribe-cli "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
      echo "${COMPREPLY[*]}"
    }
    try lumenscribe-cli --js
    try lumenscribe-cli --json ph
    try lumenscribe-cli -- --' sh "$fixtures" 2>&1) || true
  if [ "$words" = $'--json\nphoto.jpg' ]; then
    pass "Tab completes options, then files; after -- files only"
  else
    fail "completion gave: $words"
  fi
}

check_window() {
  local report
  # Prints the executable of the worker the window starts, or why there is none.
  report=$(installed xvfb-run -a -s "-screen 0 1280x800x24" /bin/sh -c '
    export XDG_RUNTIME_DIR=$(mktemp -d)
    /usr/bin/lumenscribe "$1" & app=$!
    worker=""
    for _ in $(seq 1 40); do
      sleep 0.5
      kill -0 "$app" 2>/dev/null || { echo "the window ended"; exit 0; }
      for child in $(ps -o pid= --ppid "$app"); do
        worker=$(readlink "/proc/$child/exe") && break 2
      done
    done
    kill "$app"
    wait "$app" 2>/dev/null
    rm -rf "$XDG_RUNTIME_DIR"
    echo "worker=${worker:-none}"' sh "$fixtures/${fixture[photo]}" 2>"$scratch/window.err") || true
  if [ "$report" = "worker=/usr/libexec/lumenscribe/lumenscribe-decoder" ] &&
    stderr_clean "$scratch/window.err"; then
    pass "the window opens and starts the installed worker"
  else
    fail "the window: $report $(head -c 2000 "$scratch/window.err")"
  fi
}

# Copies the fixtures to $1, the folder that the installed system sees as $fixtures.
check_installed() {
  local kind
  mkdir -p "$1"
  for kind in "${!fixture[@]}"; do cp "${origin[$kind]}" "$1/${fixture[$kind]}"; done
  chmod -R a+rX "$1"
  check_command_line
  # The tools the remaining checks use; the package itself must not have needed them.
  if [ -n "$chroot_dir" ]; then
    chroot "$chroot_dir" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
      --no-install-recommends man-db bash-completion xvfb xauth procps >/dev/null 2>&1
  fi
  check_manual_pages
  check_completion
  check_window
}

install_in_scratch_root() {
  echo "== dpkg --root $root"
  mkdir -p "$root/usr"
  if ! installed true 2>/dev/null; then
    echo "package-test: skipped installing the package: this system does not let root lay a" \
      "folder over /usr in a private mount namespace (a container without CAP_SYS_ADMIN?)"
    return
  fi
  mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/triggers"
  touch "$root/var/lib/dpkg/status" "$root/var/lib/dpkg/available"
  # The scratch root has no packages to satisfy Depends; the host's /usr beneath it does.
  if ! dpkg --root="$root" --force-depends --install "$deb" >"$scratch/dpkg.log" 2>&1; then
    fail "dpkg --install: $(cat "$scratch/dpkg.log")"
    return
  fi
  pass "dpkg installs the package"
  fixtures=$scratch/fixtures
  check_installed "$fixtures"
  dpkg --root="$root" --remove lumenscribe >/dev/null
  local left
  left=$(find "$root" -mindepth 1 -not -path "$root/var" -not -path "$root/var/lib" \
    -not -path "$root/var/lib/dpkg" -not -path "$root/var/lib/dpkg/*" -print)
  if [ -n "$left" ]; then
    fail "dpkg --remove leaves behind: $left"
  else
    pass "dpkg --remove leaves nothing behind"
  fi
}

install_in_chroot() {
  echo "== apt install in $chroot_dir"
  local mount
  for mount in proc sys dev; do
    mount --rbind "/$mount" "$chroot_dir/$mount"
    mount --make-rslave "$chroot_dir/$mount"
    mounted+=("$chroot_dir/$mount")
  done
  cp "$deb" "$chroot_dir/tmp/lumenscribe.deb"
  local apt=(chroot "$chroot_dir" env DEBIAN_FRONTEND=noninteractive apt-get -y -qq)
  "${apt[@]}" update
  if "${apt[@]}" install --no-install-recommends /tmp/lumenscribe.deb >"$scratch/apt.log" 2>&1
  then
    pass "apt installs the package and what it depends on"
  else
    fail "apt install: $(tail -n 20 "$scratch/apt.log")"
    return
  fi
  fixtures=/tmp/lumenscribe-package-test
  check_installed "$chroot_dir$fixtures"
  rm -rf "${chroot_dir:?}$fixtures" "$chroot_dir/tmp/lumenscribe.deb"
  "${apt[@]}" remove lumenscribe >/dev/null 2>&1
  # Its files and its own folders; shared ones such as /usr/share/man/man1 stay.
  local path left=()
  while IFS= read -r path; do
    path=${path#.}
    if [[ $path != */ || $path == */lumenscribe/ ]] && [ -e "$chroot_dir$path" ]; then
      left+=("$path")
    fi
  done < <(dpkg-deb --fsys-tarfile "$deb" | tar -t)
  if ((${#left[@]})); then
    fail "apt remove leaves behind: ${left[*]}"
  else
    pass "apt remove leaves nothing behind"
  fi
  # What came with the package and the checks goes too, so the tree serves the next run.
  "${apt[@]}" autoremove --purge >/dev/null 2>&1
}

# ---- main ---------------------------------------------------------------------------------

if [ -z "$deb" ]; then
  deb=$(scripts/package.sh | tail -n 1)
  deb=$(realpath "$deb")
fi
[ -f "$deb" ] || {
  echo "package-test.sh: no package $deb" >&2
  exit 2
}

$installing_only || check_package_file

root=$scratch/root
if [ "$(id -u)" -eq 0 ]; then
  if [ -n "$chroot_dir" ]; then install_in_chroot; else install_in_scratch_root; fi
elif ! $installing_only && sudo -n true 2>/dev/null; then
  chroot_args=()
  [ -z "$chroot_dir" ] || chroot_args=(--chroot "$chroot_dir")
  sudo -n "$source_tree/scripts/package-test.sh" --installing-only "${chroot_args[@]}" "$deb" ||
    failures=$((failures + 1))
else
  echo "package-test: skipped installing the package: that needs root or passwordless sudo"
fi

if ((failures)); then
  echo "package-test: $failures check(s) failed" >&2
  exit 1
fi
echo "package-test: all checks passed"
