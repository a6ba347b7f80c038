# Drives a running Tamsel from outside, on an X server without a window
# manager (Xvfb), with xdotool: windows are found by their titles, widgets
# by their place in the window. Sourced by scripts/screenshots and
# scripts/check-package.
#
# Places are window-relative, measured on the 850x420 dialog at its
# minimum size (947x566 with Debian 12's fonts).

drive_pid=
drive_win=

# drive_start TITLE COMMAND...: starts COMMAND and waits for its main window.
drive_start() {
    local title=$1
    shift
    "$@" </dev/null &
    drive_pid=$!
    drive_win=$(drive_wait_window "$title") || {
        echo "drive: no window titled '$title'; windows:" >&2
        xdotool search --name '.' getwindowname %@ >&2 2>/dev/null || true
        drive_stop
        return 1
    }
    sleep 1
}

# drive_wait_window TITLE-REGEX: prints the id of a visible window whose
# title matches, waiting up to 20 seconds.
drive_wait_window() {
    local id i
    for ((i = 0; i < 100; i++)); do
        id=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1) || true
        if [[ -n $id ]]; then
            echo "$id"
            return 0
        fi
        if [[ -n $drive_pid ]] && ! kill -0 "$drive_pid" 2>/dev/null; then
            return 1
        fi
        sleep 0.2
    done
    return 1
}

drive_click() { # X Y in the main window
    xdotool mousemove --window "$drive_win" "$1" "$2" click 1
    sleep 0.4
}

drive_type() {
    xdotool type --delay 20 "$1"
    sleep 0.3
}

drive_key() {
    xdotool key "$@"
    sleep 0.4
}

# The four tabs: 0 browser, 1 ZEB->MTX, 2 QRT->ZEB, 3 ZEB->ZEB.
drive_tab() {
    local x=(61 188 338 487)
    drive_click "${x[$1]}" 22
    sleep 0.3
}

# drive_shot WINDOW FILE: the window alone, compressed.
drive_shot() {
    import -window "$1" -strip "$2"
    if command -v optipng >/dev/null; then
        optipng -quiet -o2 "$2"
    fi
}

drive_stop() {
    if [[ -n $drive_pid ]]; then
        kill "$drive_pid" 2>/dev/null || true
        wait "$drive_pid" 2>/dev/null || true
    fi
    drive_pid=
}
