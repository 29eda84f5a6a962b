# What scripts/run, accept and soak do, sourced by them: a scratch folder, the stand-in daemon, a display, the app
# on it, and pictures of it. Expects $root, and $preset where it is not the release. Whoever sources it sets its own
# traps; `clean_up` is what they end with.

preset=${preset:-release}
# Where the app and the command line are; with a stand-in daemon those that know the other stand-ins.
programs=$root/build/$preset/bin
tools=$root/build/$preset/demo/bin

say() { printf '%s: %s\n' "$(basename "$0")" "$*"; }
fail() { say "$*" >&2; exit 1; }

# What was started goes when this script ends, however it ends, the last one first; and so does where it wrote.
scratch=
agent=
clean_up() {
  local i children
  trap '' INT TERM HUP
  children=($(jobs -p))
  for ((i = ${#children[@]} - 1; i >= 0; i--)); do end_child "${children[i]}"; done
  # The menu may have stopped it before.
  [ -z "$agent" ] || "$tools/launchctl" bootout "$agent" 2>/dev/null || true
  [ -z "$scratch" ] || rm -rf "$scratch"
}
end_child() {
  local tries
  kill "$1" 2>/dev/null || return 0
  for tries in $(seq 50); do
    kill -0 "$1" 2>/dev/null || break
    sleep 0.1
  done
  kill -KILL "$1" 2>/dev/null || true
  wait "$1" 2>/dev/null || true
}
# build [TARGET...]: the programs, and these.
build() {
  local log=$scratch/build.log
  say 'building'
  (cd "$root" && cmake --preset "$preset") >"$log" 2>&1 || { cat "$log" >&2; fail 'configuring failed'; }
  local targets=(--target ostrel-menubar ostrel-menubarctl ostrel-demo ostrel-menubar-demo ostrel-menubarctl-demo "$@")
  if [ -t 1 ]; then
    (cd "$root" && cmake --build --preset "$preset" "${targets[@]}") || fail 'the build failed'
  else
    (cd "$root" && cmake --build --preset "$preset" "${targets[@]}") 2>&1 | tee "$log" | say_progress ||
      { tail -n 50 "$log" >&2; fail 'the build failed'; }
  fi
}

# On a terminal ninja keeps its progress on one line; elsewhere this says every ten seconds how far it is.
say_progress() {
  local line said=$SECONDS
  while IFS= read -r line; do
    if [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]] && ((SECONDS >= said + 10)); then
      say "built ${BASH_REMATCH[1]} of ${BASH_REMATCH[2]}"
      said=$SECONDS
    fi
  done
}

# wait_for SECONDS COMMAND...: until the command succeeds.
wait_for() {
  local tries=$(($1 * 10))
  shift
  for ((; tries > 0; tries--)); do
    "$@" && return
    sleep 0.1
  done
  return 1
}

# The stand-ins are driven as the real ones would be: the app finds cmux by PATH, and the daemon is a launch agent that
# the menu can stop and start. They keep what they were asked in a file.
start_stand_in() {
  export HOME=$scratch/home OSTREL_DEMO_LAUNCHD=$scratch/launchd OSTREL_DEMO_RECORD=$scratch/calls
  export PATH=$tools:$PATH
  unset OSTREL_STATUS_FILE OSTREL_CONFIG_FILE
  programs=$root/build/$preset/demo
  local label=dev.ostrel.daemon
  local plist=$HOME/Library/LaunchAgents/$label.plist
  local daemon
  daemon=$(printf '%s' "$programs/ostrel" | sed 's/&/\&amp;/g; s/</\&lt;/g')
  mkdir -p "$(dirname "$plist")" "$HOME/.config/ostrel"
  printf '{\n  "warn-context" : 65\n}\n' >"$HOME/.config/ostrel/config.json"
  cat >"$plist" <<END
<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>Label</key><string>$label</string><key>ProgramArguments</key>
<array><string>$daemon</string><string>watch</string></array></dict></plist>
END
  agent=gui/$(id -u)/$label
  "$tools/launchctl" bootstrap "gui/$(id -u)" "$plist" || fail 'the stand-in daemon does not start'
  wait_for 10 test -e "$HOME/.local/state/ostrel/status.json" || fail 'the stand-in daemon does not write'
}

start_display() {
  # It would forget its background when the program that drew it has gone.
  Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>"$scratch/display" 2>"$scratch/server.log" &
  wait_for 20 test -s "$scratch/display" || { cat "$scratch/server.log" >&2; fail 'no display'; }
  DISPLAY=:$(cat "$scratch/display")
  export DISPLAY
  # Something like a desktop behind the item.
  display -window root -size 1280x900 gradient:'#5b7fa6-#2b3f5c' 2>/dev/null || true
}

# Where the screen differs from the picture of the empty one: "WIDTHxHEIGHT+X+Y". Fails while nothing does.
changed_area() {
  import -window root "$scratch/now.png" 2>/dev/null || return 1
  composite -compose difference "$scratch/empty.png" "$scratch/now.png" "$scratch/changes.png" || return 1
  [ "$(identify -format '%k' "$scratch/changes.png")" -gt 1 ] || return 1
  identify -format '%@' "$scratch/changes.png"
}

# As changed_area, once two looks at the screen agree; an area named as $1 does not count.
settled_area() {
  local before='' area tries
  for tries in $(seq 60); do
    kill -0 "$app" 2>/dev/null || return 1
    if area=$(changed_area) && [ "$area" = "$before" ] && [ "$area" != "${1:-}" ]; then
      printf '%s\n' "$area"
      return
    fi
    before=${area:-}
    sleep 0.2
  done
  return 1
}

# picture AREA FILE: the area with a margin; says where it is.
picture() {
  local width height x y margin=16
  IFS='x+' read -r width height x y <<<"$1"
  x=$((x > margin ? x - margin : 0)) y=$((y > margin ? y - margin : 0))
  width=$((width + 2 * margin)) height=$((height + 2 * margin))
  import -window root -crop "${width}x$height+$x+$y" +repage "$2"
  [ "$(identify -format '%k' "$2")" -gt 2 ] || fail "$2 shows nothing"
  say "picture: $2"
}

# take_pictures FOLDER: status-item.png and menu.png, of the app that runs.
take_pictures() {
  local item menu width height x y
  local pictures=$1
  mkdir -p "$pictures"
  rm -f "$pictures/status-item.png" "$pictures/menu.png" "$pictures/settings.png"
  item=$(settled_area) || fail 'the item does not appear'
  picture "$item" "$pictures/status-item.png"
  IFS='x+' read -r width height x y <<<"$item"
  xdotool mousemove $((x + width / 2)) $((y + height / 2)) click 1
  # Away from the menu, so that no item is highlighted.
  xdotool mousemove 40 760
  menu=$(settled_area "$item") || fail 'the menu does not open'
  picture "$menu" "$pictures/menu.png"
  # A press elsewhere closes it.
  xdotool click 1
}

# take_settings_picture FOLDER: settings.png, of the window that an app started anew opens by itself.
take_settings_picture() {
  local window
  end_child "$app"
  OSTREL_MENUBAR_OPEN_SETTINGS=1 "$programs/ostrel-menubar" 2>"$scratch/app.log" &
  app=$!
  xdotool mousemove 40 760
  wait_for 20 settings_window >/dev/null || fail 'the settings window does not open'
  window=$(settings_window)
  wait_for 20 looks_settled "$window" || fail 'the settings window does not settle'
  picture "$window" "$1/settings.png"
}

# Where it is: "WIDTHxHEIGHT+X+Y". Fails while there is none.
settings_window() {
  local id X Y WIDTH= HEIGHT SCREEN WINDOW
  id=$(xdotool search --onlyvisible --name '^ostrel Settings$' 2>/dev/null | head -n 1)
  [ -n "$id" ] || return 1
  eval "$(xdotool getwindowgeometry --shell "$id" 2>/dev/null)"
  [ -n "$WIDTH" ] || return 1 # it has just been closed
  printf '%sx%s+%s+%s\n' "$WIDTH" "$HEIGHT" "$X" "$Y"
}

# Whether two looks at an area agree; while it loads, a wheel turns in it.
looks_settled() {
  local before
  before=$(import -window root -crop "$1" +repage rgb:- | cksum)
  sleep 1
  [ "$(import -window root -crop "$1" +repage rgb:- | cksum)" = "$before" ]
}
