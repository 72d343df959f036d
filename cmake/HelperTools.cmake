# The pinned helper tools stand once in the checkout (tools/preparar puts them there; virtual environments cannot be moved).
# Each build tree's program gets links to them: a link without its target is no executable, so the program and the tests
# see a tool as absent until the set-up brings it, whichever of the two comes first.
set(VELLORA_HELPER_TOOLS pymobiledevice3 mvt-ios)
set(VELLORA_HELPER_DIR "${PROJECT_SOURCE_DIR}/build/herramientas/motor/bin")

file(MAKE_DIRECTORY "${VELLORA_APP_DIR}/Contents/Resources/motor/bin")
foreach(tool IN LISTS VELLORA_HELPER_TOOLS)
  file(CREATE_LINK "${VELLORA_HELPER_DIR}/${tool}" "${VELLORA_APP_DIR}/Contents/Resources/motor/bin/${tool}" SYMBOLIC)
endforeach()
