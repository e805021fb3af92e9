# The Debian packages that each kind of work needs; read by run, test and bench.
packages_window="g++ cmake ninja-build mingw-w64 wine wine64 fonts-wine xvfb fonts-wqy-microhei fonts-liberation imagemagick"
packages_test="$packages_window googletest clang-format python3 git locales mdbtools manpages-zh"
# Node.js comes from more places than Debian, and npm with it; where npm is there, nothing is to be installed.
command -v npm >/dev/null || packages_test="$packages_test nodejs npm"
packages_bench="$packages_window libsqlite3-dev libpcre2-dev libre2-dev python3"
