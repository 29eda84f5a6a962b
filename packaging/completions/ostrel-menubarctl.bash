# The script is the program's own, so that the two are never of different versions.
eval "$(ostrel-menubarctl completions bash)"
