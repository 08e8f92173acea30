# Finds every third-party package the library builds against. Included by the
# build and, through LibZelmoConfig.cmake, by consumers of the installed
# package, so both see the same targets. `zelmo_find` is `find_package` in the
# build and `find_dependency` in the installed config.
if(NOT COMMAND zelmo_find)
  macro(zelmo_find)
    find_package(${ARGV} REQUIRED)
  endmacro()
endif()

zelmo_find(OpenCV 4 COMPONENTS core imgproc)
zelmo_find(GSL)
zelmo_find(LAPACK)
zelmo_find(Boost 1.74)

# PCL's config pulls VTK in, whose own config fails on Debian 12 for want of an
# MPI target; none of the PCL modules used here needs VTK.
set(CMAKE_DISABLE_FIND_PACKAGE_VTK ON)
zelmo_find(PCL 1.13 COMPONENTS common kdtree search features segmentation
           sample_consensus)

# DataExchange's targets refer to the visualisation and application framework
# toolkits, so their components must be loaded too, though nothing links them.
# Its version file accepts only an exact version, so 7.6 is checked here.
zelmo_find(OpenCASCADE COMPONENTS FoundationClasses ModelingData
           ModelingAlgorithms Visualization ApplicationFramework DataExchange)
if(NOT "${OpenCASCADE_MAJOR_VERSION}.${OpenCASCADE_MINOR_VERSION}" STREQUAL "7.6")
  message(FATAL_ERROR "OpenCASCADE 7.6 required, found "
          "${OpenCASCADE_MAJOR_VERSION}.${OpenCASCADE_MINOR_VERSION}")
endif()

set(ZELMO_OCCT_LIBRARIES
    TKernel TKMath TKG2d TKG3d TKGeomBase TKBRep TKGeomAlgo TKTopAlgo TKPrim
    TKBO TKShHealing TKFillet TKXSBase TKSTEPBase TKSTEPAttr TKSTEP209 TKSTEP
    TKIGES)

# One interface target carries every dependency with its include directories
# marked as system ones, so that their headers add no warnings to ours. The
# compiler's own /usr/include is left out: as a system directory given again
# it would break #include_next.
set(ZELMO_DEP_INCLUDES ${PCL_INCLUDE_DIRS} ${OpenCASCADE_INCLUDE_DIR}
    ${OpenCV_INCLUDE_DIRS})
list(REMOVE_ITEM ZELMO_DEP_INCLUDES /usr/include)
list(REMOVE_DUPLICATES ZELMO_DEP_INCLUDES)
if(NOT TARGET zelmo_deps)
  add_library(zelmo_deps INTERFACE IMPORTED)
  set_target_properties(zelmo_deps PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES "${ZELMO_DEP_INCLUDES}"
    INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${ZELMO_DEP_INCLUDES}"
    INTERFACE_LINK_LIBRARIES
      "opencv_core;opencv_imgproc;GSL::gsl;LAPACK::LAPACK;Boost::headers;${PCL_LIBRARIES};${ZELMO_OCCT_LIBRARIES}")
endif()
