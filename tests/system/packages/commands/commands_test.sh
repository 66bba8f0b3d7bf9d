#!/usr/bin/env bash
# ./run and ./test as a user meets them on machines of all kinds. Packages, builds and programs are
# played by small programs of the same names, so that nothing is installed and nothing is built.
#
# usage: commands_test.sh CLONE CASE
# shellcheck disable=SC2016 # the small programs' text is theirs to expand
set -euo pipefail

clone=$(cd -- "$1" && pwd)
name=$2
folder=$(mktemp -d)
trap 'rm -rf -- "$folder"' EXIT
copy="$folder/a clone" # the space is on purpose
bin=$folder/bin
calls=$folder/calls
output=$folder/output

# --- The machine ----------------------------------------------------------------------------------

# fake PROGRAM : puts the text from standard input there as a program. No file in this folder may be
# a link, or the machine's own program would be overwritten.
fake() {
  rm -f -- "$bin/$1"
  cat >"$bin/$1"
  sed -i "1i #!$BASH\\ncalls='$calls'" "$bin/$1"
  chmod +x "$bin/$1"
}

# A Debian machine, used by root, on which everything is installed. No other program is on its PATH.
make_machine() {
  local tool
  mkdir -p "$copy" "$bin"
  cp -R -- "$clone/run" "$clone/test" "$clone/packaging" "$copy/"
  mkdir "$copy/build"
  for tool in bash basename cat chmod dirname env grep mkdir nproc sed sleep tr; do
    fake "$tool" <<<"exec '$(command -v "$tool")' \"\$@\""
  done
  : >"$calls"
  fake id <<<'echo 0'
  fake ctest <<<'echo "ctest $*" >>"$calls"'
  installed_but_for ''
  fake apt-get <<<'echo "apt-get $*" >>"$calls"'
  fake cmake <<'EOF'
echo "cmake $*" >>"$calls"
[[ $1 == -S ]] || exit 0
folder=$2/build/${*: -1}
mkdir -p "$folder/Quorvane.app/Contents/Linux"
echo "CMAKE_HOME_DIRECTORY:INTERNAL=$2" >"$folder/CMakeCache.txt"
: >"$folder/build.ninja"
for program in quorvane quorvane-demo; do
  printf '#!%s\necho "%s started:$*"\n' "$BASH" "$program" \
    >"$folder/Quorvane.app/Contents/Linux/$program"
  chmod +x "$folder/Quorvane.app/Contents/Linux/$program"
done
EOF
}

# installed_but_for PACKAGES : which ones the machine lacks.
installed_but_for() {
  fake dpkg-query <<EOF
for package in "\${@:4}"; do
  if [[ " $* " == *" \$package "* ]]; then status=1; else echo "\$package installed"; fi
done
exit "\${status:-0}"
EOF
}

# provides PACKAGE NAMES : an installed package stands for others by these names, too.
provides() {
  sed -i "2a if ((\$# == 3)); then echo 'installed $2'; exit; fi" "$bin/dpkg-query"
}

# in_session COMMAND... : with a session bus, as the environment tells it.
in_session() {
  DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent "$@"
}

# on_laptop DESCRIPTION COMMAND... : where these power supplies are all that the machine has.
on_laptop() {
  local description=$1
  shift
  if ! command -v umockdev-run >/dev/null; then
    echo "skipped: there is no umockdev-run here"
    exit 77
  fi
  printf '%b' "$description" >"$folder/laptop.umockdev"
  wrapper=(umockdev-run -d "$folder/laptop.umockdev" --)
  "$@"
}

supply() { # NAME TYPE [SCOPE]
  printf 'P: /devices/%s/power_supply/%s\\nE: SUBSYSTEM=power_supply\\nA: type=%s\\\\n\\n' "$1" "$1" "$2"
  if [[ -n ${3:-} ]]; then
    printf 'A: scope=%s\\\\n\\n' "$3"
  fi
  printf '\\n'
}

# call COMMAND ARGUMENT... : runs it as the machine's user from somewhere else; `status` tells how
# it ended, `output` what it said.
wrapper=()
call() {
  status=0
  (cd / && "${wrapper[@]}" env -u XDG_RUNTIME_DIR PATH="$bin" "$copy/$1" "${@:2}") \
    >"$output" 2>&1 </dev/null || status=$?
}

# --- What is expected -----------------------------------------------------------------------------

broken() {
  printf '%s\n' "$1" "--- exit status: $status" '--- output:' "$(cat "$output")" '--- calls:' "$(cat "$calls")"
  exit 1
}

ends_with() {
  ((status == $1)) || broken "It was to end with $1."
}

says() {
  grep -qF -- "$1" "$output" || broken "It was to say: $1"
}

calls_program() {
  grep -qE -- "^$1\$" "$calls" || broken "It was to call: $1"
}

never_calls() {
  ! grep -qE -- "$1" "$calls" || broken "It was not to call: $1"
}

# --- The cases ------------------------------------------------------------------------------------

Run_WithoutSession_SaysSoAndStartsTheDemo() {
  unset DBUS_SESSION_BUS_ADDRESS
  call run --mode automatic
  ends_with 0
  says 'There is no desktop session here'
  says 'quorvane-demo started:--mode automatic'
}

Run_InSessionOnLaptop_StartsQuorvane() {
  in_session on_laptop "$(supply AC Mains)$(supply BAT0 Battery)" call run --verbose
  ends_with 0
  says 'quorvane started:--verbose'
}

Run_InSessionWithoutBattery_SaysSoAndStartsTheDemo() {
  in_session on_laptop "$(supply AC Mains)" call run
  ends_with 0
  says 'This machine has no battery'
  says 'quorvane-demo started:'
}

Run_OnlyMouseHasBattery_StartsTheDemo() {
  in_session on_laptop "$(supply mouse Battery Device)" call run
  says 'This machine has no battery'
  says 'quorvane-demo started:'
}

Run_SystemScopeBattery_StartsQuorvane() {
  in_session on_laptop "$(supply BAT0 Battery System)" call run
  says 'quorvane started:'
}

Run_Demo_IsStartedOnAnyMachine() {
  in_session on_laptop "$(supply BAT0 Battery)" call run --demo --speed 10
  ends_with 0
  says 'quorvane-demo started:--speed 10'
}

Run_Quit_SpeaksToQuorvaneEvenWithoutSession() {
  unset DBUS_SESSION_BUS_ADDRESS
  call run --quit
  says 'quorvane started:--quit'
}

Run_EverythingInstalled_AsksAptForNothing() {
  call run --demo
  ends_with 0
  never_calls '^apt-get'
}

Run_PackagesMissing_InstallsExactlyThose() {
  installed_but_for cmake ninja-build
  call run --demo
  ends_with 0
  calls_program 'apt-get -q update'
  calls_program 'apt-get -q -y .*install --no-install-recommends cmake ninja-build'
  says 'quorvane-demo started:'
}

Run_TestPackagesMissing_AreNotInstalled() {
  installed_but_for umockdev clang-tidy cbatticon
  call run --demo
  ends_with 0
  never_calls '^apt-get'
}

Run_SecondTime_ConfiguresNothing() {
  call run --demo
  : >"$calls"
  call run --demo
  ends_with 0
  never_calls '^cmake -S'
  calls_program "cmake --build .*/build/release"
}

Run_CloneHasMoved_ConfiguresAnew() {
  call run --demo
  mv -- "$copy" "$folder/elsewhere"
  copy=$folder/elsewhere
  call run --demo
  ends_with 0
  calls_program "cmake -S $folder/elsewhere --fresh --preset release"
}

Run_NotRootWithSudo_InstallsThroughIt() {
  installed_but_for cmake
  fake id <<<'echo 1000'
  fake sudo <<<'echo "sudo $*" >>"$calls"; exec "$@"'
  call run --demo
  ends_with 0
  calls_program 'sudo env DEBIAN_FRONTEND=noninteractive apt-get .*install .*cmake'
}

Run_NotRootWithoutSudo_NamesPackagesAndCommand() {
  installed_but_for cmake libudev-dev
  fake id <<<'echo 1000'
  call run --demo
  ends_with 1
  says 'these packages are missing: cmake libudev-dev'
  says 'there is no sudo here'
  says 'apt-get install --no-install-recommends cmake libudev-dev'
  never_calls '^cmake'
}

Run_SudoRefused_EndsWithTheCommandToRun() {
  installed_but_for cmake
  fake id <<<'echo 1000'
  fake sudo <<<'exit 1'
  fake sleep <<<''
  call run --demo
  ends_with 1
  says 'apt-get install --no-install-recommends cmake'
  never_calls '^cmake'
}

Run_NoAptGet_NamesPackages() {
  installed_but_for cmake
  rm "$bin/apt-get"
  call run --demo
  ends_with 1
  says 'these packages are missing: cmake'
  says 'There is no apt-get here'
}

Run_AptUpdateFails_TriesToInstallAllTheSame() {
  installed_but_for cmake
  fake sleep <<<''
  fake apt-get <<<'echo "apt-get $*" >>"$calls"; [[ $* != *update* ]]'
  call run --demo
  ends_with 0
  says 'could not be brought up to date'
  calls_program 'apt-get .*install .*cmake'
}

Run_AptInstallFails_SaysWhatToDo() {
  installed_but_for cmake
  fake apt-get <<<'[[ $* == *update* ]] || { echo "E: no network"; exit 100; }'
  call run --demo
  ends_with 1
  says 'E: no network'
  says 'apt-get could not install: cmake'
  never_calls '^cmake'
}

Run_NoDebianButTools_Builds() {
  rm "$bin/dpkg-query" "$bin/apt-get"
  fake ninja <<<''
  fake c++ <<<''
  fake pkg-config <<<''
  call run --demo
  ends_with 0
  says 'no Debian-like system'
  says 'quorvane-demo started:'
}

Run_NoDebianAndNoTools_NamesThem() {
  rm "$bin/dpkg-query" "$bin/apt-get"
  call run --demo
  ends_with 1
  says 'These programs are missing: ninja c++ pkg-config'
  says 'qt6-base-dev'
}

Run_BuildFails_StartsNothing() {
  call run --demo
  fake cmake <<<'exit 1'
  call run --demo
  ends_with 1
  ! grep -q started "$output" || broken 'It was to start nothing.'
}

Test_WithoutRing_RunsAllRings() {
  call test
  ends_with 0
  calls_program 'ctest .*/build/dev .*--label-regex \^\(\.\*\)\$'
  calls_program 'cmake --build .*/build/dev'
}

Test_OneRing_RunsThatRing() {
  call test integration
  calls_program 'ctest .*--label-regex \^\(integration\)\$'
}

Test_TwoRings_RunsBoth() {
  call test unit system
  calls_program 'ctest .*--label-regex \^\(unit\|system\)\$'
}

Test_UnitRing_BuildsOnlyTheUnitTests() {
  call test unit
  calls_program 'cmake --build .* --target unit_tests'
}

Test_OnePartOfARing_RunsThatPart() {
  call test --preset shipped clicks
  calls_program 'cmake --build .*/build/shipped'
  calls_program 'ctest .*/build/shipped .*--label-regex \^\(clicks\)\$'
}

Test_TargetsToBuild_BuildsNothingElse() {
  call test --preset tsan --build unit_core --build integration_power unit integration
  calls_program 'cmake --build .*/build/tsan --target unit_core integration_power'
}

Test_Preset_IsConfiguredBuiltAndTested() {
  call test --preset asan
  calls_program 'cmake -S .* --preset asan'
  calls_program 'cmake --build .*/build/asan'
  calls_program 'ctest --test-dir .*/build/asan .*'
}

Test_ArgumentsAfterDashes_GoToCtest() {
  call test unit -- --tests-regex Battery
  calls_program 'ctest .* --tests-regex Battery'
}

Test_FailingTest_EndsWithFailure() {
  fake ctest <<<'exit 8'
  call test
  ends_with 8
}

Test_UnknownRing_ExplainsItself() {
  call test everything
  ends_with 2
  says 'usage: ./test'
  never_calls .
}

Test_PackageProvidedByAnother_IsNotMissing() {
  installed_but_for libqt6opengl6-dev
  provides 'qt6-base-dev' 'libqt6opengl6-dev (= 6.8.2), something-else'
  call test
  ends_with 0
  never_calls '^apt-get'
}

Test_PackageWhoseNameIsOnlyPartOfAProvidedOne_IsMissing() {
  installed_but_for cmake
  provides 'cmake-data' 'cmake-extras, my-cmake'
  call test
  calls_program 'apt-get .*install --no-install-recommends cmake'
}

Test_PackagesMissing_InstallsThoseOfBuildAndTest() {
  installed_but_for cmake umockdev clang-tidy
  call test
  calls_program 'apt-get .*install --no-install-recommends cmake umockdev'
}

PackageList_EveryLineHasOnePackageOfOneGroup() {
  local package group rest seen=' '
  while read -r package group rest; do
    [[ -z $package || $package == \#* ]] && continue
    status=0 output=/dev/null
    [[ $group =~ ^(build|test|lint|bench|images)$ ]] || broken "$package is of no known group: $group"
    [[ -z $rest || $rest == \#* ]] || broken "What follows $package is no comment: $rest"
    [[ $seen != *" $package "* ]] || broken "$package is listed twice"
    seen+="$package "
  done <"$clone/packaging/packages.list"
  [[ $seen != ' ' ]] || broken 'The list is empty.'
}

make_machine
"$name"
echo "$name: passed"
