#!/usr/bin/env bash
# Installs the Debian 12 packages that Quellbox needs. The only place where they are named.
#   install-packages.sh run     to build and start the program
#   install-packages.sh test    to run the checks as well
#   install-packages.sh fuzz    to run the fuzzer
#   install-packages.sh package to build the Debian package, and to try it out
#   install-packages.sh mail    to run the test with mail servers
#   install-packages.sh windows to build the program for Windows, and to run it and its tests under Wine
set -euo pipefail

run_packages=(
  g++               # compiler
  make              # make run, make test
  cmake             # build description
  ninja-build       # the build tool of the presets
  pkg-config        # finds the libraries that are not Qt's
  qt6-base-dev      # windows, settings, threads
  qt6-tools-dev     # how CMake finds what compiles the translations
  qt6-l10n-tools    # compiles them, and extracts the texts to translate
  libqt6svg6        # draws the icons
  libqt6sql6-sqlite # keeps the history of actions in a database
  libgmime-3.0-dev  # mail library: parts, encodings, character sets
  libxml2-dev       # parser of HTML, for the readable text of messages
  libpsl-dev        # which domains belong to one organization, for the warnings above it
  libuchardet-dev   # tells the character set of texts that do not name theirs
  libcurl4-openssl-dev # connections to mail servers: TLS, logging in
  qtkeychain-qt6-dev # hands passwords to whoever keeps them on the desktop
  libsecret-1-0     # which it loads by itself, to reach a secret service such as GNOME Keyring
  zlib1g-dev        # unpacks messages that the server has packed
  fonts-dejavu-core # a font, where the machine has none
  fonts-droid-fallback # Chinese, Japanese and Korean, which the font above lacks
  xvfb xauth        # a virtual display for "make run" on a machine without one
)
test_packages=(
  libgtest-dev      # tests
  libbenchmark-dev  # benchmarks
  libfuse3-dev fuse3 # a mounted folder that is as slow as a share, for tests and benchmarks
  samba             # a file server of the tests' own, for the tests and benchmarks on real shares
  smbnetfs          # a client that mounts its shares
  gvfs-backends gvfs-fuse libglib2.0-bin # another one: the desktop's, and the command that connects a share
  qt6-translations-l10n # Qt's own texts in German
  openssl           # makes the certificates of the mail server that tests connect to
  clang-format      # check of the layout
  clang-tidy        # check of the code
  cppcheck          # another one, which finds other things
  python3           # check of the #include lines
  git               # lists the project's files
  dbus-daemon       # a bus of its own for the tests of the tray icon and of passwords and for the desktop's client of
                    # shares, and the bus under that of assistive tools
  gnome-keyring     # keeps passwords, in a session of the test's own
  python3-dbus      # speaks on that bus
  openbox           # a window manager for that test, which can minimize
  trayer            # a notification area for it
  xdotool           # a hand that clicks there
  x11-utils         # xprop, which sees whether the window is hidden
  desktop-file-utils # check of the entry in the desktop's menu
  appstream         # check of the description for software centres
  man-db groff-base # check of the manual pages
  zsh               # check of the completion for that shell
  librsvg2-bin      # draws the icons in the sizes that an installation has
  at-spi2-core gir1.2-atspi-2.0 python3-gi # the bus of assistive tools, and a way to listen to it
)
fuzz_packages=(
  clang               # the compiler that has the fuzzer
  libclang-rt-14-dev  # the fuzzer itself and the sanitizers of that compiler
)
windows_packages=(
  make cmake ninja-build pkg-config # as for the build here
  gcc libc6-dev               # glib asks for a compiler of this machine as well
  g++-mingw-w64-x86-64-posix  # compiler for Windows, with the threads of the C++ library
  mingw-w64-x86-64-dev        # the headers and libraries of Windows
  libz-mingw-w64-dev          # unpacks messages that the server has packed; glib's compression
  qt6-base-dev                # the programs that Qt's own build runs, and their description
  qt6-tools-dev qt6-l10n-tools # translations
  qt6-translations-l10n       # Qt's own texts in German
  fp-utils                    # compiles the help file
  dpkg-dev                    # unpacks source packages
  meson                       # builds glib
  publicsuffix python3        # the list of public suffixes, and what packs it into its library
  autoconf automake libtool   # for gmime's configure script, which its source package lacks
  gtk-doc-tools               # a macro of that script
  tcl                         # puts SQLite's source together
  googletest                  # the tests' library, as sources
  librsvg2-bin icoutils       # draw the pictures and put them into icon files
  zip                         # the portable package
  nsis                        # the installer
  wine wine64                 # runs the tests and the installer
  xvfb xauth openbox          # a virtual display for them, and what manages its windows
  fonts-dejavu-core           # a font, where the machine has none
)

package_packages=(
  dpkg-dev          # finds the libraries that the package depends on, and gives the flags for hardening
  file              # tells what is a program, to be stripped
  gzip              # compresses the manual pages and the changelogs
  librsvg2-bin      # draws the icons in the sizes of the icon theme
  lintian           # checks the package against Debian's policy
  debootstrap       # makes the fresh system in which the package is tried out
)

mail_packages=(
  postfix           # takes messages in, and delivers them
  amavisd-new       # a filter with a quarantine
  spamassassin spamd spamc # the filter inside of it, which also works alone
  rspamd            # another filter; it needs no Redis for what the test asks of it
  python3-dkim openssl # signatures of messages, and the key for them
)

case "${1:-}" in
  run) packages=("${run_packages[@]}") ;;
  test) packages=("${run_packages[@]}" "${test_packages[@]}") ;;
  fuzz) packages=("${run_packages[@]}" "${fuzz_packages[@]}") ;;
  package) packages=("${run_packages[@]}" "${package_packages[@]}") ;;
  mail) packages=("${run_packages[@]}" "${test_packages[@]}" "${mail_packages[@]}") ;;
  windows) packages=("${windows_packages[@]}") ;;
  *) echo "usage: $0 run|test|fuzz|package|windows" >&2; exit 2 ;;
esac
# Only a desktop without X needs Qt's Wayland plugin.
if [ -n "${WAYLAND_DISPLAY:-}" ] && [ -z "${DISPLAY:-}" ]; then
  packages+=(qt6-wayland)
fi

if ! command -v dpkg-query >/dev/null; then
  echo "This is no Debian system. Please install the equivalents of: ${packages[*]}" >&2
  exit 0
fi
missing=()
for package in "${packages[@]}"; do
  [ "$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null)" = 'install ok installed' ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "Please install, as root: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
# These packages make the machine a server, which nobody has asked for: the tests start servers of their own. What is
# already installed stays as it is. What hides the services for the time of the installation is gone after a restart at
# the latest.
services=()
for package in "${missing[@]}"; do
  case "$package" in
    samba) services+=(smbd.service nmbd.service) ;;
    postfix) services+=(postfix.service) ;;
    amavisd-new) services+=(amavis.service amavis-mc.service amavisd-snmp-subagent.service) ;;
    spamassassin) services+=(spamassassin-maintenance.timer) ;;
    spamd) services+=(spamd.service) ;;
    rspamd) services+=(rspamd.service) ;;
  esac
done
policy=/usr/sbin/policy-rc.d
aside=$policy.quellbox
restore_services() {
  if [ -e "$aside" ]; then "${as_root[@]}" mv -f "$aside" "$policy"; else "${as_root[@]}" rm -f "$policy"; fi
  [ ${#services[@]} -gt 0 ] && command -v systemctl >/dev/null || return 0
  "${as_root[@]}" systemctl disable "${services[@]}" || true
  [ ! -d /run/systemd/system ] || "${as_root[@]}" systemctl unmask --runtime "${services[@]}" || true
}
if [ ${#services[@]} -gt 0 ]; then
  trap restore_services EXIT
  [ ! -d /run/systemd/system ] || "${as_root[@]}" systemctl mask --runtime "${services[@]}"
  [ ! -e "$policy" ] || "${as_root[@]}" mv "$policy" "$aside"
  printf '#!/bin/sh\nexit 101\n' | "${as_root[@]}" tee "$policy" >/dev/null
  "${as_root[@]}" chmod 755 "$policy"
fi
# Without a choice Debian's postfix gets a configuration that sends and takes mail.
if [[ " ${missing[*]} " == *" postfix "* ]]; then
  echo 'postfix postfix/main_mailer_type select No configuration' | "${as_root[@]}" debconf-set-selections
fi
echo "Installing ${missing[*]}"
"${as_root[@]}" apt-get -q update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends install "${missing[@]}" </dev/null
