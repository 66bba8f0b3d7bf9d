# shellcheck shell=bash
# What ./run, ./test and .ci/run share: install what is missing, configure, build. To be sourced by
# a script that has set -euo pipefail. Everything said goes to standard error, so that the output
# of a program that is started afterwards can be piped.

QUORVANE_ROOT=$(CDPATH="" cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
QUORVANE_PACKAGE_LIST=$QUORVANE_ROOT/packaging/packages.list

say() {
  printf '%s\n' "$*" >&2
}

fail() {
  say "$(basename -- "$0"): $*"
  exit 1
}

# packages_of GROUP... : the packages of these groups, one a line.
packages_of() {
  local groups=" $* " package group rest
  while read -r package group rest; do
    if [[ -n $package && $package != \#* && $groups == *" $group "* ]]; then
      printf '%s\n' "$package"
    fi
  done <"$QUORVANE_PACKAGE_LIST"
}

# missing_packages GROUP... : those of them that are not installed. One query for all of them,
# because this is asked at every start.
missing_packages() {
  local packages installed package missing
  mapfile -t packages < <(packages_of "$@")
  # The query fails as soon as it does not know one of the packages; it lists the others all the
  # same.
  # shellcheck disable=SC2016 # the braces are the query's
  installed=$(dpkg-query --show --showformat '${Package} ${db:Status-Status}\n' \
    "${packages[@]}" 2>/dev/null) || true
  missing=()
  for package in "${packages[@]}"; do
    if [[ $'\n'$installed$'\n' != *$'\n'"$package installed"$'\n'* ]]; then
      missing+=("$package")
    fi
  done
  if ((${#missing[@]} > 0)); then
    not_provided "${missing[@]}"
  fi
}

# not_provided PACKAGE... : those of them that no installed package brings under its own name, as a
# later release of the distribution may have it.
not_provided() {
  local provided package
  # shellcheck disable=SC2016 # the braces are the query's
  provided=$(dpkg-query --show --showformat '${db:Status-Status} ${Provides}\n' 2>/dev/null |
    sed -n 's/([^)]*)//g; s/, */ /g; s/^installed \(.*\)$/ \1 /p') || true
  for package in "$@"; do
    if [[ $provided != *" $package "* ]]; then
      printf '%s\n' "$package"
    fi
  done
}

is_root() {
  [[ $(id -u) == 0 ]]
}

# as_root COMMAND... : asks nothing of root, at most a password of others.
as_root() {
  if is_root; then
    env DEBIAN_FRONTEND=noninteractive "$@"
  else
    sudo env DEBIAN_FRONTEND=noninteractive "$@"
  fi
}

# Another program, often the nightly upgrade, may hold the lists for some seconds.
update_package_lists() {
  local attempt
  for attempt in 1 2 3; do
    if as_root apt-get -q update </dev/null >&2; then
      return 0
    fi
    ((attempt == 3)) || sleep 5
  done
  say "The package lists could not be brought up to date. Trying with those that are here."
}

install_packages() {
  local command="apt-get install --no-install-recommends $*"
  if ! command -v apt-get >/dev/null; then
    fail "these packages are missing: $*
There is no apt-get here to install them with. Install them by hand, then run this again."
  fi
  if ! is_root && ! command -v sudo >/dev/null; then
    fail "these packages are missing: $*
Installing them takes root's rights, and there is no sudo here. As root, run
    $command
and then this again as yourself."
  fi

  say "Installing what is missing: $*"
  update_package_lists
  # The lock's time limit lets an upgrade that runs right now finish first.
  if ! as_root apt-get -q -y -o DPkg::Lock::Timeout=600 -o Dpkg::Use-Pty=0 \
    install --no-install-recommends "$@" </dev/null >&2; then
    fail "apt-get could not install: $*
Its own words are above. Most often the network or the package sources are at fault
(/etc/apt/sources.list and /etc/apt/sources.list.d). Once this works as root, run this again:
    $command"
  fi
}

# On a system without dpkg the names of the packages mean little. Whoever has installed the tools
# may build; CMake then names the libraries that are missing.
require_tools() {
  local tool missing=()
  for tool in cmake ninja c++ pkg-config; do
    command -v "$tool" >/dev/null || missing+=("$tool")
  done
  if ((${#missing[@]} > 0)); then
    fail "this is no Debian-like system, so nothing can be installed here by itself.
These programs are missing: ${missing[*]}
All that is needed, by its names in Debian: $(packages_of "$@" | tr '\n' ' ')
Install the like with your system's own package manager, then run this again."
  fi
  say "This is no Debian-like system: nothing was installed. Going on with what is here."
}

# ensure_packages GROUP...
ensure_packages() {
  local missing
  if ! command -v dpkg-query >/dev/null; then
    require_tools "$@"
    return
  fi
  mapfile -t missing < <(missing_packages "$@")
  if ((${#missing[@]} > 0)); then
    install_packages "${missing[@]}"
  fi
}

# configure PRESET : only where that has not been done yet; ninja does it again by itself when a
# CMake file has changed.
configure() {
  local folder=$QUORVANE_ROOT/build/$1
  local home="CMAKE_HOME_DIRECTORY:INTERNAL=$QUORVANE_ROOT"
  if [[ -e $QUORVANE_ROOT/build && ! -w $QUORVANE_ROOT/build ]]; then
    fail "$QUORVANE_ROOT/build belongs to another user. Remove it as that user and run this again."
  fi
  if [[ ! -f $folder/CMakeCache.txt ]]; then
    cmake -S "$QUORVANE_ROOT" --preset "$1" >&2
  elif ! grep -qxF -- "$home" "$folder/CMakeCache.txt"; then
    say "The clone has moved since it was built: building it anew."
    cmake -S "$QUORVANE_ROOT" --fresh --preset "$1" >&2
  elif [[ ! -f $folder/build.ninja ]]; then
    cmake -S "$QUORVANE_ROOT" --preset "$1" >&2
  fi
}

# build PRESET [TARGET...]
build() {
  local preset=$1 targets=("${@:2}")
  configure "$preset"
  cmake --build "$QUORVANE_ROOT/build/$preset" ${targets:+--target "${targets[@]}"} >&2
}
