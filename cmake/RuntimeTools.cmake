# The programs that sysinfo calls while it runs. None is needed to build it; the feature summary
# names those that this machine lacks, as packages of type RUNTIME.
function(sysinfo_runtime_tool name package purpose)
    find_program(SYSINFO_TOOL_${name} ${name} PATHS /usr/sbin /sbin)
    mark_as_advanced(SYSINFO_TOOL_${name})
    if(SYSINFO_TOOL_${name})
        set_property(GLOBAL APPEND PROPERTY PACKAGES_FOUND ${name})
    else()
        set_property(GLOBAL APPEND PROPERTY PACKAGES_NOT_FOUND ${name})
    endif()
    set_package_properties(${name} PROPERTIES TYPE RUNTIME DESCRIPTION "package ${package}" PURPOSE "${purpose}")
endfunction()

sysinfo_runtime_tool(sudo sudo "lets an ordinary user read the DMI tables")
sysinfo_runtime_tool(dmidecode dmidecode "BIOS version and date, serial number, CPU speed")
