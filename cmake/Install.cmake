# Installation: a versioned shared library, the public headers under include/lmeffect, lmtext,
# a CMake package (lmeffect::lmeffect) and lmeffect.pc, all at the project's one version; and a
# Debian package through CPack.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set_target_properties(lmeffect PROPERTIES
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR})

# What a caller of the text object, the font manager and the effect stack includes; every other
# header stays private to the build.
set(LM_PUBLIC_HEADERS
  foundation/Error.h foundation/List.h foundation/LmLog.h foundation/LmString.h
  raster/LmBitmap.h raster/LmRect.h
  platform/LmGlyphBox.h platform/LmGlyphStyle.h platform/LmPaint.h platform/LmPlatformFont.h
  effect/LmEffect.h effect/LmGradient.h effect/LmProperty.h
  effect/LmBevelProperty.h effect/LmEmbossProperty.h effect/LmGlowProperty.h
  effect/LmGradientProperty.h effect/LmInnerGlowProperty.h effect/LmInnerShadowProperty.h
  effect/LmLightingProperty.h effect/LmLinearGradientProperty.h effect/LmOuterGlowProperty.h
  effect/LmOuterShadowProperty.h effect/LmPatternProperty.h effect/LmRadialGradientProperty.h
  effect/LmShadowProperty.h effect/LmStopsProperty.h effect/LmStrokeProperty.h effect/LmTextProperty.h
  text/FontManager.h text/LineInfo.h text/LmTextInstanceManager.h text/LmTextObject.h
  text/LmView.h)
foreach(h ${LM_PUBLIC_HEADERS})
  get_filename_component(dir ${h} DIRECTORY)
  install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/src/${h}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lmeffect/${dir} COMPONENT dev)
endforeach()
install(FILES ${LM_GENERATED_DIR}/LmVersion.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lmeffect COMPONENT dev)

install(TARGETS lmeffect EXPORT lmeffectTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lmeffect)
if(TARGET lmtext)
  install(TARGETS lmtext RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

if(TARGET lmeffect_java)
  install_jar(lmeffect_java DESTINATION ${CMAKE_INSTALL_DATADIR}/java)
endif()

install(EXPORT lmeffectTargets NAMESPACE lmeffect::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/lmeffect)
configure_package_config_file(${CMAKE_CURRENT_SOURCE_DIR}/cmake/lmeffectConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/lmeffectConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/lmeffect)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/lmeffectConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lmeffectConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/lmeffectConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/lmeffect)

# Relative to the .pc file, so an installed tree can be moved (cmake --install --prefix).
file(RELATIVE_PATH LM_PC_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(${CMAKE_CURRENT_SOURCE_DIR}/cmake/lmeffect.pc.in
  ${CMAKE_CURRENT_BINARY_DIR}/lmeffect.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lmeffect.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(CPACK_PACKAGE_NAME lmeffect)
set(CPACK_PACKAGE_VENDOR "lmeffect")
set(CPACK_PACKAGE_CONTACT "lmeffect developers <lmeffect@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Text-effect renderer: library, headers and the lmtext tool")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Fonts are data, not linked: the tool's default family needs one.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_GENERATOR DEB)
include(CPack)
