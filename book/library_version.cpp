// The library's own version number, as `IBookT::version` answers it.
namespace tabrix {
int libraryVersion() { return 0x03050408; }
} // namespace tabrix
