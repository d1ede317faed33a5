// kavor-log: the stand-in for the system's log tool.

int main() {
  return 64;
}
