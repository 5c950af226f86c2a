#!/usr/bin/env bash
# Makes the archive of the sources and the packages for Debian, and uses them as somebody who has downloaded them would.
#
#   debian_packages.sh sources BUILD WORK   packs the sources, and unpacks them below the folder WORK
#   debian_packages.sh make WORK            builds what was unpacked, without a network, and makes the packages
#   debian_packages.sh lintian WORK         looks at them by the distribution's rules
#   debian_packages.sh install WORK         installs, uses and removes them in a copy of this system
set -euo pipefail
root=$(cd "$(dirname "$0")/../../.." && pwd)
action=$1
shift
version=$(sed -nE 's/^ +VERSION ([0-9.]+)$/\1/p' "$root/CMakeLists.txt")

complain() {
    echo "$1" >&2
    return 1
}

expect() {
    [ "$1" = "$2" ] || { printf 'Expected: %s\nFound:    %s\n' "$2" "$1" >&2; return 1; }
}

# In a namespace of its own, if this user may have one, a program reaches no network.
without_network() {
    if unshare --net true 2>/dev/null; then
        unshare --net "$@"
    else
        "$@"
    fi
}

pack_sources() {
    local build=$1 work=$2
    rm -rf "$work"
    mkdir -p "$work"
    cpack --config "$build/CPackSourceConfig.cmake" -B "$work"
    tar -xf "$work/zvutil-$version.tar.xz" -C "$work"
    cd "$work/zvutil-$version"
    [ -x run ] || complain "./run can't be run"
    if git -C "$root" rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        diff <(git -C "$root" ls-files --cached --others --exclude-standard | sort) \
            <(find . -type f -o -type l | sed 's|^\./||' | sort)
    fi
}

make_packages() {
    local work=$1 source="$1/zvutil-$version" kind architecture
    architecture=$(dpkg --print-architecture)
    cd "$source"
    without_network cmake --preset package
    # ./run builds this target alone, and what it has built can be installed.
    without_network cmake --build --preset package -j"$(nproc)" --target product
    cmake --install build/package --prefix "$work/product" > /dev/null
    without_network cmake --build --preset package -j"$(nproc)" --target package
    expect "$(cd build/package/packages && printf '%s\n' *deb | sed -E 's/_[^_]+(_[^_]+)$/\1/')" \
"libzvutil-dev-dbgsym_$architecture.ddeb
libzvutil-dev_$architecture.deb
libzvutil-doc_all.deb
libzvutil0-dbgsym_$architecture.ddeb
libzvutil0_$architecture.deb
zvhost-dbgsym_$architecture.ddeb
zvhost_$architecture.deb"
    rm -rf "$work/contents"
    for kind in "$source"/build/package/packages/*deb; do
        dpkg-deb --extract "$kind" "$work/contents"
    done
    # The machine that has made them isn't named in them.
    ! grep -rlF "$work" "$work/contents" || complain "These hold the path of the build"
}

check_packages() {
    expect "$(dpkg-deb --info "$1/zvutil-$version"/build/package/packages/libzvutil0_*.deb shlibs | cut -d ' ' -f 1-3)" \
"libDockFramework 0 libzvutil0
libHostSupport 0 libzvutil0
libzv_logging 0 libzvutil0
libzvutil 0 libzvutil0
libzvworkbench 0 libzvutil0"
    # No bug of the distribution asks for the first upload, which isn't one to the distribution.
    lintian --allow-root --fail-on error,warning --tag-display-limit 0 --suppress-tags initial-upload-closes-no-bugs \
        "$1/zvutil-$version"/build/package/packages/*.deb
}

# --- In the copy of the system

scratch=/var/tmp/zvutil-packages

# All files but what other programs keep in caches and the lists of dpkg.
system_files() {
    find /etc /opt /usr /var/lib -xdev \
        ! -path '/var/lib/dpkg/*' ! -name 'ld.so.cache*' ! -path '/usr/share/mime/*/x-zvutil*' ! -name __pycache__ \
        ! -name '*.pyc' | sort
}

# As a user who has no settings, and whose environment says nothing of where things are.
as_user() { env -i PATH=/usr/bin:/bin LANG=C.UTF-8 HOME="$scratch/home" "$@"; }

build_first_programs() {
    mkdir "$scratch"/first
    cp -R "$root/tests/product/package/first" "$scratch"/first/source
    as_user cmake -S "$scratch"/first/source -B "$scratch"/first/build
    as_user cmake --build "$scratch"/first/build
    as_user "$scratch"/first/build/first | grep -x "host srv, path /a%20b"
    local flags
    flags=$(as_user pkg-config --cflags --libs zvutil)
    # shellcheck disable=SC2086 # each word is a flag
    as_user c++ "$scratch"/first/source/main.cpp -o "$scratch"/first/program $flags
    as_user "$scratch"/first/program | grep -x "host srv, path /a%20b"
    # shellcheck disable=SC2086
    as_user c++ -g -O0 "$root/tests/product/gdb/subject.cpp" -o "$scratch"/first/subject $flags
}

# As the guides tell it, from the sources that the documentation brings.
build_modules() {
    local example
    mkdir "$scratch"/modules
    for example in module document_type; do
        as_user cmake -S "/usr/share/doc/libzvutil-doc/examples/$example" -B "$scratch/build-$example"
        as_user cmake --build "$scratch/build-$example"
        cp "$scratch/build-$example"/*.so "$scratch"/modules
    done
    expect "$(as_user zvhost --modules "$scratch"/modules -e 'print(NearestResistor(4600, "E24"))')" "4700"
    as_user zvhost --load "$scratch"/modules/checklists.so --new checklist --screenshot "$scratch"/checklist.png
    [ "$(stat -c %s "$scratch"/checklist.png)" -gt 15000 ] || complain "The picture of the checklist is empty"
}

use_host() {
    expect "$(as_user zvhost --version)" "zvhost $version"
    as_user zvhost --list | grep -x "function PathToURI(string)"
    expect "$(as_user zvhost -e "print(PathToURI('a b'))")" "file:///a%20b"
    as_user zvhost --files /usr/share/mime/packages --types .xml | grep "zvhost\.xml$"
    as_user zvhost --screenshot "$scratch"/workbench.png "$root/examples/workbench/amplifier.testplan"
    [ "$(stat -c %s "$scratch"/workbench.png)" -gt 20000 ] || complain "The picture of the workbench is empty"
}

# complete WORD...: what the last word is completed to.
complete_words() {
    # shellcheck disable=SC2016 # the inner shell expands it
    bash --norc --noprofile -c '
        source /usr/share/bash-completion/bash_completion
        source /usr/share/bash-completion/completions/zvhost
        COMP_WORDS=(zvhost "$@") COMP_CWORD=$# COMP_LINE="zvhost $*" COMP_TYPE=9
        COMP_POINT=${#COMP_LINE}
        _zvhost zvhost "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
        echo "${COMPREPLY[*]}"' bash "$@"
}

check_desktop() {
    local page=/usr/share/man/man1/zvhost.1.gz name
    expect "$(man -w zvhost)" "$page"
    expect "$(MANWIDTH=80 man --warnings --encoding=UTF-8 --local-file "$page" 2>&1 >/dev/null)" ""
    expect "$(desktop-file-validate /usr/share/applications/zvhost.desktop)" ""
    for name in testplan:testplan+xml zvsch:schematic+xml zvscr:script; do
        echo "x" > "$scratch/a.${name%:*}"
        expect "$(gio info -a standard::content-type "$scratch/a.${name%:*}" | sed -n 's/^ *standard::content-type: //p')" \
            "application/x-zvutil-${name#*:}"
        grep -q "application/x-zvutil-${name#*:}=.*zvhost\.desktop" /usr/share/applications/mimeinfo.cache \
            || complain "The workbench isn't offered for *.${name%:*}"
    done
    cp "$root/examples/workbench/amplifier.testplan" "$scratch"/plan
    gio info -a standard::content-type "$scratch/plan" | grep -q "x-zvutil-testplan+xml" \
        || complain "A test plan isn't known by its content"
    expect "$(complete_words --st)" "--style"
    expect "$(complete_words --new s)" "schematic script"
    cd "$scratch"
    expect "$(complete_words a.te)" "a.testplan"
    expect "$(bash --norc -c 'source /usr/share/bash-completion/bash_completion
        source /usr/share/bash-completion/completions/zvhost; complete -p zvhost')" "complete -F _zvhost zvhost"
}

check_debug_information() {
    local library id
    library=$(readlink -f "$(dirname "$(find /usr/lib -path '*/zvhost/workbench.so')")/../libzvutil.so.0")
    ! readelf --sections --wide "$library" | grep -q debug_info || complain "$library has debug information"
    id=$(readelf -n "$library" | sed -n 's/^ *Build ID: //p')
    readelf --sections --wide "/usr/lib/debug/.build-id/${id:0:2}/${id:2}.debug" | grep -q debug_info
    # GDB trusts the printers where the distribution keeps them.
    as_user cmake -DGDB=gdb "-DPROGRAM=$scratch/first/subject" "-DSOURCE=$root/tests/product/gdb/subject.cpp" \
        -DLIBRARIES=/usr/share/gdb/auto-load -P "$root/tests/product/gdb/gdb.cmake"
    ! ldd /usr/lib/*/qt5/plugins/designer/libzvutil_designer.so | grep "not found" \
        || complain "The plugin of Qt Designer lacks a library"
}

try_packages() {
    local packages="$1/zvutil-$version/build/package/packages" before
    mount -t proc proc /proc
    mkdir -p "$scratch/home"
    before=$(system_files)
    ! dpkg --install "$packages"/zvhost_*.deb 2>"$scratch/refused" || complain "zvhost was installed without its library"
    grep -q "depends on libzvutil0 (= $version-" "$scratch"/refused
    dpkg --purge zvhost
    dpkg --install "$packages"/*deb
    expect "$(dpkg --audit)" ""
    ldconfig -p | grep "libzvutil\.so\.0 "
    build_first_programs
    build_modules
    use_host
    check_desktop
    check_debug_information
    dpkg --purge zvhost-dbgsym libzvutil-dev-dbgsym libzvutil0-dbgsym libzvutil-dev zvhost libzvutil-doc
    dpkg --remove libzvutil0
    dpkg --purge libzvutil0
    diff <(echo "$before") <(system_files)
    ! find /usr/share/mime -name 'x-zvutil*' | grep . || complain "Types of documents stay"
    ! ldconfig -p | grep zvutil || complain "The libraries stay known"
}

# Runs the rest of this script in a copy of the system that is gone afterwards.
in_copy_of_system() {
    local work=$1
    mount -t tmpfs tmpfs "$work/copy"
    mkdir "$work/copy/changes" "$work/copy/work" "$work/copy/root"
    mount -t overlay overlay "$work/copy/root" \
        -o "lowerdir=/,upperdir=$work/copy/changes,workdir=$work/copy/work"
    mount --bind /dev "$work/copy/root/dev"
    # They may lie on disks of their own, which the copy lacks.
    local folder
    for folder in "$root" "$work"; do
        mkdir -p "$work/copy/root$folder"
        mount --bind "$folder" "$work/copy/root$folder"
        mount -o remount,bind,ro "$work/copy/root$folder"
    done
    chroot "$work/copy/root" "$root/tests/product/package/debian_packages.sh" try "$work"
}

case $action in
sources) pack_sources "$@" ;;
make) make_packages "$@" ;;
lintian) check_packages "$@" ;;
install)
    work=$1
    mkdir -p "$work/copy"
    if [ "$(id -u)" != 0 ] || ! unshare --mount --pid --fork mount -t tmpfs tmpfs "$work/copy" 2>/dev/null; then
        echo "Skipped: only root can make a copy of the system"
        exit
    fi
    unshare --mount --net --pid --fork --kill-child "$0" copy "$work"
    ;;
copy) in_copy_of_system "$@" ;;
try) try_packages "$@" ;;
esac
