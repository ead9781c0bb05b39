# vector_sources(FILE...): sources of retouch_core that hold code for vectors wider than 16 bytes.
function(vector_sources)
  if(NOT WIN32)
    return()
  endif()
  # 64-bit Windows keeps the stack aligned to 16 bytes and GCC cannot realign it there: wider registers that
  # it saves on the stack must be moved by instructions that do not mind.
  # Constants of 64 bytes come from memory: made anew from an integer register in every turn of the loop, as
  # GCC 12 prefers, they halve the speed of the 32-bit code.
  set_source_files_properties(${ARGN} TARGET_DIRECTORY retouch_core
    PROPERTIES COMPILE_OPTIONS "-Wa,-muse-unaligned-vector-move;-mtune-ctrl=^inter_unit_moves_to_vec")
endfunction()
