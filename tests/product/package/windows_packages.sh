#!/usr/bin/env bash
# Makes the packages for Windows and uses them as somebody who has downloaded them would, under Wine.
#
#   windows_packages.sh make BUILD            makes them in BUILD/packages
#   windows_packages.sh archive BUILD WORK    unpacks the archive, and runs what is in it
#   windows_packages.sh setup BUILD WORK      installs, runs, and uninstalls
#
# Below the folder WORK is a Wine prefix without anything of other tests.
set -euo pipefail
root=$(cd "$(dirname "$0")/../../.." && pwd)
action=$1
build=$2
packages="$build/packages"
work=${3:-}
drive="$work/prefix/drive_c"

# only FILE...: the file, if it is the only one.
only() {
    [ $# = 1 ] && [ -e "$1" ] || { echo "Not one file: $*" >&2; return 1; }
    echo "$1"
}

# Without any variables but those that Wine needs, and one that tells it how names of files are written: what the program needs has to lie beside it.
wine() {
    env -i PATH=/usr/bin:/bin LANG=C.UTF-8 HOME="$work/home" WINEPREFIX="$work/prefix" QT_FORCE_STDERR_LOGGING= \
        "$root/tools/winerun" "$@"
}

expect() {
    [ "$1" = "$2" ] || { printf 'Expected: %s\nFound:    %s\n' "$2" "$1" >&2; return 1; }
}

begin() {
    rm -rf "$work"
    mkdir -p "$work/home"
}

# Wine runs on in the background, in folders that the next run removes, and keeps the registry meanwhile.
end() { env WINEPREFIX="$work/prefix" WINEDEBUG=-all wineserver -k -w 2>/dev/null || true; }

registry() { wine reg query 'HKLM\Software' /s; }

wait_until_gone() {
    local tries
    for ((tries = 0; tries < 300; ++tries)); do
        [ -e "$1" ] || return 0
        sleep 0.2
    done
    echo "$1 stays" >&2
    return 1
}

# What is in the folder $1, as a user would try it.
try() {
    local output
    expect "$(wine "$1/bin/zvhost.exe" -e "print(PathToURI('C:\\\\a b'))" | tr -d '\r')" "file:///C:/a%20b"
    output=$(wine "$1/bin/zvhost.exe" --list)
    grep -q "^command  _modifystyle" <<< "$output"
    # On the platform of Windows, with its style, an icon of SVG, and all that the workbench loads.
    end
    wine --display "$1/bin/zvhostw.exe" --screenshot "$work/workbench.png"
    [ "$(stat -c %s "$work/workbench.png")" -gt 20000 ]
}

make_packages() {
    rm -rf "$packages"/*.zip "$packages"/*.exe "$packages/_CPack_Packages"
    cpack --config "$build/CPackConfig.cmake"
    ls -l "$packages"
}

use_archive() {
    # With blanks and characters that no code page of Windows has together.
    local folder="$work/Mein Ordner – 東京 ж ∑"
    mkdir -p "$folder"
    cd "$folder"
    cmake -E tar xf "$(only "$packages"/zvutil-[0-9]*.zip)"
    try "$(only "$folder"/*)"
    # The developers' archive fits into the same folder: whoever unpacks it can build at once.
    cmake -E tar xf "$(only "$packages"/zvutil-dev-*.zip)"
    find . -name zvutilConfig.cmake | grep -q .
    find . -name libzvutil.dll.a | grep -q .
}

use_setup() {
    wine "$(only "$packages"/*-setup.exe)" /S '/D=C:\Program Files\zvutil'
    local folder="$drive/Program Files/zvutil"
    try "$folder"
    [ ! -e "$folder/include" ]
    find "$drive" -iname 'Workbench.lnk' | grep -q .
    grep -qi 'uninstall.*zvutil' <(registry)
    # A user's own file stays; all others go.
    echo mine > "$folder/bin/mine.txt"
    wine "$folder/uninstall.exe" /S
    # The program that one starts goes on in a copy of itself.
    wait_until_gone "$folder/uninstall.exe"
    wait_until_gone "$folder/plugins"
    expect "$(cd "$folder" && find . -type f)" "./bin/mine.txt"
    expect "$(find "$drive" -ipath '*start menu*zvutil*')" ""
    expect "$(registry | grep -ci 'zvutil')" 0
}

case $action in
make) make_packages ;;
archive)
    begin
    trap end EXIT
    use_archive
    ;;
setup)
    begin
    trap end EXIT
    use_setup
    ;;
esac
