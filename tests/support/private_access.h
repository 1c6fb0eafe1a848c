#ifndef VARNEL_TESTS_PRIVATE_ACCESS_H
#define VARNEL_TESTS_PRIVATE_ACCESS_H

/// Gives a test access to a private member, for states that the public interface cannot create:
///
///   VARNEL_PRIVATE_MEMBER(BufLen, CCmdStr, m_nBufLen, unsigned int)
///   object.*BufLen() = 1;
///
/// This works because explicit instantiations may name private members.
#define VARNEL_PRIVATE_MEMBER(Name, Class, member, Type) \
  template <Type Class::*pointer>                        \
  struct Name##Access {                                  \
    friend Type Class::*Name() { return pointer; }       \
  };                                                     \
  Type Class::*Name();                                   \
  template struct Name##Access<&Class::member>;

#endif
