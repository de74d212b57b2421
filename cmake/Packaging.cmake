# The Debian package: `cmake --build build --target package` (or `cpack -G DEB` in build/) makes
# clipquill_<version>_<arch>.deb out of the install rules, installed under /usr.
set(CQ_PACKAGE_MAINTAINER "The Clipquill developers <clipquill@users.noreply.github.com>"
    CACHE STRING "Maintainer field of the Debian package")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME clipquill)
set(CPACK_PACKAGE_VENDOR "The Clipquill developers")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "studio for short narrated videos")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# The build is RelWithDebInfo; the package carries no debug information.
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CQ_PACKAGE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# CPack puts the summary above this as the synopsis line.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Clipquill records a spoken message through the microphone while the user
clicks, in its media browser, the videos, pictures and short texts that are
to be seen. Every click is logged with its time; the recording can be
replayed as a draft, corrected, and rendered with ffmpeg into one video with
the voice mixed in, then played, saved, converted for phones or mailed.")
# The Qt libraries come from dpkg-shlibdeps; the programs the studio starts, the speech voice,
# the font of its text slides and Qt's WebP and TIFF readers are not linked, so they are named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "ffmpeg, imagemagick, xdg-utils, qt6-speech-flite-plugin, qt6-image-formats-plugins, fonts-liberation, pocketsphinx-en-us")

include(CPack)
