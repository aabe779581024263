# A small session built by commands: one section with curves made from numbers.
add_section demo
get_number_of_sections
