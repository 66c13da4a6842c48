# The libraries that the workbench needs on Windows, beside it: those of Qt and of the compiler. They are shipped as DLLs,
# so that a host and its plug-ins share one C++ runtime.

find_package(Qt5 5.15 REQUIRED COMPONENTS Svg)
set(bin ${CMAKE_INSTALL_BINDIR})

foreach(module Core Gui Svg Widgets)
    install(FILES $<TARGET_FILE:Qt5::${module}> DESTINATION ${bin} COMPONENT workbench)
endforeach()

# The offscreen platform is for imports without a window.
install(FILES $<TARGET_FILE:Qt5::QWindowsIntegrationPlugin> $<TARGET_FILE:Qt5::QOffscreenIntegrationPlugin>
        DESTINATION ${bin}/platforms COMPONENT workbench)
install(FILES $<TARGET_FILE:Qt5::QWindowsVistaStylePlugin> DESTINATION ${bin}/styles COMPONENT workbench)
install(FILES packaging/windows/qt.conf DESTINATION ${bin} COMPONENT workbench)

# The texts of Qt's own dialogs and buttons.
set(IMPORT_QT_TRANSLATION /usr/share/qt5/translations/qtbase_ru.qm CACHE FILEPATH "Russian texts of Qt, to be installed")
install(FILES ${IMPORT_QT_TRANSLATION} DESTINATION ${bin}/translations COMPONENT workbench OPTIONAL)

if(MINGW)
    foreach(library libgcc_s_seh-1 libstdc++-6 libwinpthread-1)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}.dll OUTPUT_VARIABLE file
                        OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        install(FILES ${file} DESTINATION ${bin} COMPONENT workbench)
    endforeach()
endif()
