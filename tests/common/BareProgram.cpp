// An executable without resources; tests copy it and give the copies version blocks.
int main() { return 0; }
