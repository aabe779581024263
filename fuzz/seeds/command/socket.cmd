add_curve_to_plot_by_name "p" "s" "v" 1
set_option toolbar_button_style plain
load_available_plugins
set_string_option "log file" "/tmp/x.log"
show_string_in_text_editor 11 hello
world
# a comment
add_curve_values "c" [1,2,3] 0x1F #ff00aa 50% yes
