# Bash functions for running Windows programs under Wine on a display of their own. Source this
# file; every function works on one private prefix and never touches another one's processes.
#
#   wine_env_find            sets WINE_LOADER to the installed wine; fails when there is none
#   wine_env_has_32          whether it runs 32-bit programs: Wine's experimental way without wine32
#                            does not count
#   wine_env_prefix [DIR]    makes the prefix once (DIR, else build/wine-prefix) and exports what
#                            its programs need; later calls only check that it is complete, and
#                            set up anew one of another Wine or of an older wine_env_settings
#   wine_env_display         starts Xvfb on a free display number, or keeps the DISPLAY that is
#                            set when called with "keep"
#   wine_env_run SECONDS PROOF PROGRAM [ARGUMENT...]
#                            runs the program; fails when it does not write the file PROOF anew,
#                            because wine exits with 0 even if a program crashed while it started
#   wine_env_stop            ends this prefix's wineserver and the Xvfb that was started
#   wine_env_japanese        makes the programs of this shell those of a Japanese user; fails where
#                            the system has no source of that locale
#   wine_env_path FILE       the file's name as Windows programs take it
#
# A program's exit status is that of wine_env_run; 124 means that it took longer than SECONDS.

wine_env_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
wine_env_xvfb=
# What wine_env_prefix sets up; goes up by one with each change of it.
wine_env_settings=5

wine_env_japanese_font=/usr/share/fonts/opentype/ipafont-gothic/ipagp.ttf

wine_env_find() {
    local candidate
    # A packaged wine64 need not put a "wine" in the path.
    for candidate in wine wine64 /usr/lib/wine/wine64; do
        if command -v "$candidate" >/dev/null; then
            WINE_LOADER=$(command -v "$candidate")
            break
        fi
    done
    for candidate in wineserver /usr/lib/wine/wineserver64 /usr/lib/wine/wineserver; do
        if command -v "$candidate" >/dev/null; then
            WINE_SERVER=$(command -v "$candidate")
            break
        fi
    done
    if [ -z "${WINE_LOADER:-}" ] || [ -z "${WINE_SERVER:-}" ]; then
        echo "Wine is not installed" >&2
        return 1
    fi
    export WINESERVER=$WINE_SERVER
}

wine_env_has_32() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' wine32:i386 2>/dev/null)" = installed ]
}

wine_env_prefix() {
    wine_env_find || return
    export WINEPREFIX=${1:-$wine_env_root/build/wine-prefix}
    export WINEDLLOVERRIDES="mscoree,mshtml=" WINEDEBUG=-all
    export LC_ALL=C.UTF-8 # with C, names outside ASCII cannot be opened
    export WINEARCH=win64 # of the prefix: such a one runs both kinds of programs
    local ready bits=64
    wine_env_has_32 && bits="32 and 64"
    ready="settings $wine_env_settings, $("$WINE_LOADER" --version 2>/dev/null), $bits bits"
    [ -e "$wine_env_japanese_font" ] && ready+=", a Japanese font"
    [ "$(cat "$WINEPREFIX/facetor-ready" 2>/dev/null)" = "$ready" ] && return 0
    echo "Making the Wine prefix $WINEPREFIX (once, about 15 s)" >&2
    mkdir -p "$WINEPREFIX/drive_c/windows/Fonts"
    # Debian's wine64 does not look where fonts-wine puts the fonts; without them the caption
    # buttons show letters and every dialog has another width.
    ln -sf /usr/share/wine/fonts/*.ttf "$WINEPREFIX/drive_c/windows/Fonts/" || return
    # Without a display: nothing shall ask anything.
    DISPLAY= "$WINE_LOADER" wineboot -u >/dev/null 2>&1 && "$WINE_SERVER" -w || {
        echo "wineboot failed in $WINEPREFIX" >&2
        return 1
    }
    # A crash ends the program instead of waiting for a click. And the GUI tests' windows are not
    # handed to a window manager: without one, each window would wait 2 s for its answer.
    DISPLAY= "$WINE_LOADER" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD \
        /d 0 /f >/dev/null 2>&1 || return 1
    local program
    for program in facetor_gui_tests facetor_manual_pictures; do
        DISPLAY= "$WINE_LOADER" reg add \
            "HKCU\\Software\\Wine\\AppDefaults\\$program.exe\\X11 Driver" /v Managed /d N /f \
            >/dev/null 2>&1 || return 1
    done
    # Without Wine's own browser the kind of file is known, but not that the manual's pages are of it.
    DISPLAY= "$WINE_LOADER" reg add 'HKLM\Software\Classes\.html' /ve /d htmlfile /f \
        >/dev/null 2>&1 || return 1
    # The font that Windows has for Japanese windows, under its name.
    if [ -e "$wine_env_japanese_font" ]; then
        ln -sf "$wine_env_japanese_font" "$WINEPREFIX/drive_c/windows/Fonts/" || return
        DISPLAY= "$WINE_LOADER" reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "MS UI Gothic" \
            /d IPAPGothic /f >/dev/null 2>&1 || return 1
    fi
    "$WINE_SERVER" -w
    echo "$ready" >"$WINEPREFIX/facetor-ready"
}

wine_env_display() {
    [ "${1:-}" = keep ] && [ -n "${DISPLAY:-}" ] && return 0
    local answer
    answer=$(mktemp) || return
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$answer" >/dev/null 2>&1 &
    wine_env_xvfb=$!
    local tenths=0
    until [ -s "$answer" ]; do
        if ! kill -0 "$wine_env_xvfb" 2>/dev/null || [ $((tenths += 1)) -gt 150 ]; then
            rm -f "$answer"
            echo "Xvfb did not start" >&2
            return 1
        fi
        sleep 0.1
    done
    DISPLAY=:$(tr -d '[:space:]' <"$answer")
    export DISPLAY
    rm -f "$answer"
}

wine_env_run() {
    local seconds=$1 proof=$2 status=0
    shift 2
    rm -f "$proof"
    timeout --foreground "$seconds" "$WINE_LOADER" "$@" || status=$?
    if [ ! -s "$proof" ]; then
        echo "$1 left no $proof (status $status): it did not run to its end" >&2
        [ "$status" -ne 0 ] || status=1
    fi
    return "$status"
}

wine_env_japanese() {
    local locale=$wine_env_root/build/locale/ja_JP.UTF-8
    # A locale of our own: the system's list of locales is its owner's business.
    [ -e "$locale/LC_CTYPE" ] ||
        { mkdir -p "${locale%/*}" && localedef -i ja_JP -f UTF-8 "$locale"; } >/dev/null 2>&1 || return
    export LOCPATH=${locale%/*} LC_ALL=ja_JP.UTF-8 2>/dev/null
}

wine_env_stop() {
    if [ -n "${WINEPREFIX:-}" ] && [ -d "$WINEPREFIX" ]; then
        "$WINE_SERVER" -k 2>/dev/null
        "$WINE_SERVER" -w 2>/dev/null
    fi
    if [ -n "$wine_env_xvfb" ]; then
        kill "$wine_env_xvfb" 2>/dev/null
        wait "$wine_env_xvfb" 2>/dev/null
        wine_env_xvfb=
    fi
    return 0
}

wine_env_path() {
    local full
    full=$(realpath -m -- "$1") || return
    printf 'Z:%s\n' "${full//\//\\}"
}
