# A small session built by commands: one section with two curves given as x y pairs.
add_section demo
add_curve demo v(in) 0 V s 0 0 1e-9 0.5 2e-9 1 3e-9 0.5 4e-9 0
add_curve demo i(r1) 0 A s 0 0 1e-9 1e-3 2e-9 2e-3
add_points demo v(in) 5e-9 -0.5 6e-9 -1
get_number_of_sections
# A first plot of the transient example (opened from the command line by make run).
add_plot "transient" analog
add_curve_to_plot_by_name "transient" "rc_raw_tran.raw" "v(in)" 0
add_curve_to_plot_by_name "transient" "rc_raw_tran.raw" "v(out)" 0
