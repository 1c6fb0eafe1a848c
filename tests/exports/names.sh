# shellcheck shell=bash
# Sourced: the demangled names of dynamic symbols, one a line, sorted. dynamic_names --defined-only|--undefined-only FILE
# The two or three symbols of a constructor or destructor share one name. The standard library's spelling of strings is
# shortened, addresses and sizes are left out.
dynamic_names() {
  nm --dynamic "$1" --demangle --format=posix "$2" |
    sed -E '
      s/ [A-Za-z]( +[0-9a-f]+){0,2} *$//
      s/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g
      s/std::basic_string_view<char, std::char_traits<char> >/std::string_view/g
      s/std::vector<std::string, std::allocator<std::string ?> ?>/std::vector<std::string>/g' |
    LC_ALL=C sort -u
}
